#include "Source/Tools/batch/Results/History.h"

#include "Source/Tools/batch/Results/ResultsFile.h"

namespace qrv::batch {

History::History(const std::string& folder, const Shard& shard, Keeps keeps) {
    std::unordered_map<std::string, std::size_t> files; // that the records are of
    readRecords(folder, [&](Record record, std::size_t file) {
        if (!shard.holds(record.pdf)) return;
        if (keeps == Keeps::counts) record.missing.clear();
        Record& last = records_[record.pdf];
        // Two files may tell of one PDF, when the number of shards has changed; their times can be compared
        // as texts. Within a file the later one counts, also if the clock was put back.
        std::size_t& fileOfLast = files[record.pdf];
        if (file != fileOfLast && record.finished < last.finished) return;
        fileOfLast = file;
        last = std::move(record);
    });
    for (const auto& [pdf, record] : records_) {
        if (record.isConverted()) byContent_.emplace(record.sha256, &record);
    }
}

const Record* History::of(const std::string& pdf) const {
    const auto found = records_.find(pdf);
    return found == records_.end() ? nullptr : &found->second;
}

const Record* History::ofContent(const Record& wanted) const {
    const auto [first, last] = byContent_.equal_range(wanted.sha256);
    for (auto found = first; found != last; ++found) {
        if (matches(*found->second, wanted)) return found->second;
    }
    return nullptr;
}

bool History::matches(const Record& record, const Record& wanted) {
    return !wanted.sha256.empty() && record.sha256 == wanted.sha256 && record.mode == wanted.mode &&
           record.wishes == wanted.wishes;
}

} // namespace qrv::batch
