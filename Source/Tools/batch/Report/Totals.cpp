#include "Source/Tools/batch/Report/Totals.h"

#include <algorithm>
#include <limits>

namespace qrv::batch {

namespace {

void increase(std::int64_t& sum, std::int64_t number) {
    sum += std::clamp<std::int64_t>(number, 0, std::numeric_limits<std::int64_t>::max() - sum);
}

} // namespace

Verdict verdictOf(const Record& record) {
    if (!record.isConverted()) return Verdict::failed;
    return record.missingCount > 0 ? Verdict::incomplete : Verdict::complete;
}

void Totals::add(const Record& record) {
    const Verdict verdict = verdictOf(record);
    ++archives;
    complete += verdict == Verdict::complete;
    incomplete += verdict == Verdict::incomplete;
    failed += verdict == Verdict::failed;
    increase(missing, record.missingCount);
    increase(pages, record.pages.value_or(0));
    increase(size, record.pdfSize);
    increase(milliseconds, record.milliseconds);
    finished = std::max(finished, record.finished);
}

} // namespace qrv::batch
