#include "Source/Tools/batch/Results/History.h"

namespace qrv::batch {

History::History(const std::string& folder, const Shard& shard)
    : files_(readRecords(folder, [&](Record record, RecordPlace place) {
          if (shard.holds(record.pdf)) add(std::move(record), place);
      })) {
    for (const auto& [pdf, entry] : entries_) {
        if (entry.record.isConverted()) byContent_.emplace(entry.record.sha256, &entry.record);
    }
}

void History::add(Record record, const RecordPlace& place) {
    record.missing.clear();
    Entry& last = entries_[record.pdf];
    // Two files may tell of one PDF, when the number of shards has changed; their times can be compared as
    // texts. Within a file the later one counts, also if the clock was put back.
    if (place.file != last.place.file && record.finished < last.record.finished) return;
    if (!record.isConverted()) record.text = last.record.text;
    last = {std::move(record), place};
}

const Record* History::of(const std::string& pdf) const {
    const auto found = entries_.find(pdf);
    return found == entries_.end() ? nullptr : &found->second.record;
}

std::vector<const Record*> History::all() const {
    std::vector<const Record*> records;
    records.reserve(entries_.size());
    for (const auto& [pdf, entry] : entries_) records.push_back(&entry.record);
    return records;
}

Record History::whole(const Record& record) const {
    const auto found = entries_.find(record.pdf);
    if (record.missingCount == 0 || found == entries_.end()) return record;
    const RecordPlace& place = found->second.place;
    std::optional<Record> again = readRecordAt(files_[place.file], place.offset);
    Record result = record;
    if (again && again->pdf == record.pdf && again->missingCount == record.missingCount)
        result.missing = std::move(again->missing);
    return result;
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
