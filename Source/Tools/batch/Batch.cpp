#include "Source/Tools/batch/Batch.h"

#include "Platform/Engine/Process/Machine.h"

#include <algorithm>

namespace qrv::batch {

using namespace std::chrono_literals;

Batch::Batch(const std::vector<Item>& items, std::size_t jobs, const ConversionOptions& conversion,
             const Resumption& resumption, ResultsFile& results, Progress& progress)
    : items_(items), jobs_(jobs), conversion_(conversion), resumption_(resumption), results_(results),
      progress_(progress) {
    tally_.total = items.size();
}

Batch::~Batch() {
    stop();
}

void Batch::start() {
    start_ = std::chrono::steady_clock::now();
    const std::size_t count = std::min(jobs_, items_.size());
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
    if (const auto known = resumption_.known(wanted)) return finish(known->record, known->outcome, false);
    if (const auto same = resumption_.sameContent(wanted)) {
        if (const auto copied = copyConverted(*same, wanted, conversion_))
            return finish(*copied, Outcome::convertedBefore, true);
    }
    waitForMemory();
    ++converting_;
    const std::optional<Record> record = convert(wanted, conversion_, stop_.get_token());
    --converting_;
    if (record) finish(*record, record->isConverted() ? Outcome::converted : Outcome::failed, true);
}

/// One conversion at least goes on, or nothing ever would.
void Batch::waitForMemory() {
    constexpr std::size_t enoughForTheNext = std::size_t{256} << 20;
    while (converting_ > 0 && engine::availableMemory() < enoughForTheNext && !stop_.stop_requested())
        std::this_thread::sleep_for(200ms);
}

void Batch::finish(const Record& record, Outcome outcome, bool isNew) {
    if (isNew && record.isConverted()) resumption_.removeEarlierText(record);
    const std::lock_guard lock(mutex_);
    if (isNew) results_.append(record);
    tally_.add(outcome);
    progress_.finished(record, outcome, tally_);
}

std::chrono::duration<double> Batch::elapsed() const {
    return std::chrono::steady_clock::now() - start_;
}

} // namespace qrv::batch
