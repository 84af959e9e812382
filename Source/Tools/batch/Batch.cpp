#include "Source/Tools/batch/Batch.h"

#include "Platform/Engine/Process/Machine.h"
#include "Source/Tools/batch/Conversion/BatchError.h"

namespace qrv::batch {

using namespace std::chrono_literals;

Batch::Batch(const std::vector<Item>& items, const BatchOptions& options, const ConversionOptions& conversion,
             const History& history, ResultsFile& results, Progress& progress)
    : items_(items), options_(options), conversion_(conversion), history_(history), results_(results),
      progress_(progress) {
    tally_.total = items.size();
}

void Batch::start() {
    start_ = std::chrono::steady_clock::now();
    const std::size_t count = std::min(options_.jobs, items_.size());
    working_ = count;
    threads_.reserve(count);
    for (std::size_t i = 0; i < count; ++i) threads_.emplace_back([this] { work(); });
}

void Batch::stop() {
    stop_.request_stop();
}

bool Batch::isUnderWay() {
    if (working_ == 0) return false;
    const std::lock_guard lock(mutex_);
    progress_.passed(tally_, elapsed());
    return true;
}

Tally Batch::tally() {
    threads_.clear();
    progress_.ended(summaryText(tally_, elapsed()));
    if (failure_) std::rethrow_exception(failure_);
    return tally_;
}

void Batch::work() {
    try {
        for (std::size_t index = next_++; index < items_.size() && !stop_.stop_requested(); index = next_++)
            convertOne(items_[index]);
    } catch (...) {
        const std::lock_guard lock(mutex_);
        failure_ = std::current_exception();
        stop_.request_stop();
    }
    --working_;
}

void Batch::convertOne(const Item& item) {
    {
        const std::lock_guard lock(mutex_);
        progress_.started(item.archive);
    }
    const Record wanted = recordToBe(item, conversion_);
    Outcome outcome{};
    if (const std::optional<Record> known = knownBefore(wanted, outcome))
        return finish(*known, outcome, false);
    if (const std::optional<Record> copied = copyOfSameContent(wanted))
        return finish(*copied, Outcome::convertedBefore, true);
    waitForMemory();
    ++converting_;
    const std::optional<Record> record = convert(wanted, conversion_, stop_.get_token());
    --converting_;
    if (record) finish(*record, record->isConverted() ? Outcome::converted : Outcome::failed, true);
}

std::optional<Record> Batch::knownBefore(const Record& wanted, Outcome& outcome) {
    const Record* const before = history_.of(wanted.pdf);
    if (!before || !History::matches(*before, wanted)) return std::nullopt;
    outcome = before->isConverted() ? Outcome::convertedBefore : Outcome::failedBefore;
    const bool isKnown =
        before->isConverted() ? suffices(*before) : !options_.retriesFailed && fails(*before);
    if (!isKnown) return std::nullopt;
    Record record = *before;
    record.archive = wanted.archive;
    return record;
}

/// An archive that was moved, or is there twice, need not be converted again.
std::optional<Record> Batch::copyOfSameContent(const Record& wanted) {
    const Record* const same = history_.ofContent(wanted);
    if (!same || !same->text.empty() || !suffices(*same) || !copyConverted(*same, wanted, conversion_))
        return std::nullopt;
    Record record = *same;
    record.archive = wanted.archive;
    record.pdf = wanted.pdf;
    return record;
}

bool Batch::suffices(const Record& before) const {
    return !(conversion_.isStrict && before.missingCount > 0) && isWhole(before, conversion_.output);
}

/// What only lacked resources fails no more where that is no failure.
bool Batch::fails(const Record& before) const {
    return conversion_.isStrict || before.error->domain != BatchErrorDomain ||
           before.error->code != BatchMissingError;
}

/// One conversion at least goes on, or nothing ever would.
void Batch::waitForMemory() {
    constexpr std::size_t enoughForTheNext = std::size_t{256} << 20;
    while (converting_ > 0 && engine::availableMemory() < enoughForTheNext && !stop_.stop_requested())
        std::this_thread::sleep_for(200ms);
}

void Batch::finish(const Record& record, Outcome outcome, bool isNew) {
    const std::lock_guard lock(mutex_);
    if (isNew) results_.append(record);
    tally_.add(outcome);
    progress_.finished(record, outcome, tally_);
}

std::chrono::duration<double> Batch::elapsed() const {
    return std::chrono::steady_clock::now() - start_;
}

} // namespace qrv::batch
