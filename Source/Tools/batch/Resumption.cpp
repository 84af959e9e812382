#include "Source/Tools/batch/Resumption.h"

#include "Source/Tools/batch/Conversion/BatchError.h"

namespace qrv::batch {

std::optional<Resumption::Known> Resumption::known(const Record& wanted) const {
    if (repeats_ == Repeats::everything) return std::nullopt;
    const Record* const before = history_.of(wanted.pdf);
    if (!before || !History::matches(*before, wanted)) return std::nullopt;
    if (!(before->isConverted() ? suffices(*before) : failsAgain(*before))) return std::nullopt;
    Known known{*before, before->isConverted() ? Outcome::convertedBefore : Outcome::failedBefore};
    known.record.archive = wanted.archive;
    return known;
}

std::optional<Record> Resumption::sameContent(const Record& wanted) const {
    if (repeats_ == Repeats::everything) return std::nullopt;
    const Record* const same = history_.ofContent(wanted);
    if (!same || !same->text.empty() || !suffices(*same)) return std::nullopt;
    return history_.whole(*same);
}

void Resumption::removeEarlierText(const Record& converted) const {
    const Record* const before = history_.of(converted.pdf);
    if (converted.text.empty() && before && !before->text.empty())
        removeText(conversion_.output, converted.pdf);
}

bool Resumption::suffices(const Record& converted) const {
    return !(conversion_.isStrict && converted.missingCount > 0) && isWhole(converted, conversion_.output);
}

/// What only lacked resources fails no more where that is no failure, and a tool that could not be started
/// has not failed with the archive.
bool Resumption::failsAgain(const Record& failed) const {
    if (repeats_ == Repeats::failures) return false;
    if (failed.error->domain != BatchErrorDomain) return true;
    if (failed.error->code == BatchMissingError) return conversion_.isStrict;
    return failed.error->code != BatchNotStartedError;
}

} // namespace qrv::batch
