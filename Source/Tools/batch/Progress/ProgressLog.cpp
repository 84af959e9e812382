#include "Source/Tools/batch/Progress/ProgressLog.h"

#include "Source/Tools/Common/TerminalText.h"

#include <iomanip>
#include <ostream>

namespace qrv::batch {

namespace {

std::string detailsOf(const Record& record) {
    std::string text;
    if (record.pages) text = std::to_string(*record.pages) + (record.pages == 1 ? " page, " : " pages, ");
    text += sizeText(record.pdfSize) + ", " + timeText(std::chrono::milliseconds(record.milliseconds));
    if (record.missingCount > 0) text += ", " + std::to_string(record.missingCount) + " missing";
    return text;
}

} // namespace

std::string outcomeText(const Record& record, Outcome outcome) {
    const std::string archive = shown(record.archive);
    switch (outcome) {
    case Outcome::converted:
        return "converted " + archive + " (" + detailsOf(record) + ")";
    case Outcome::convertedBefore:
        return "skipped   " + archive + " (converted before)";
    case Outcome::failed:
    case Outcome::failedBefore:
        break;
    }
    return "failed    " + archive + (outcome == Outcome::failedBefore ? " (before)" : "") + ": " +
           shown(record.error->text) + " (" + shown(record.error->domain) + " " +
           std::to_string(record.error->code) + ")";
}

void ProgressLog::started(const std::string&) {}

void ProgressLog::finished(const Record& record, Outcome outcome, const Tally& tally) {
    const std::string total = std::to_string(tally.total);
    stream_ << '[' << std::setw(static_cast<int>(total.size())) << tally.done() << '/' << total << "] "
            << outcomeText(record, outcome) << '\n'
            << std::flush; // whoever follows the log sees it now
}

void ProgressLog::passed(const Tally&, std::chrono::duration<double>) {}

void ProgressLog::ended(const std::string& summary) {
    stream_ << shown(summary) << '\n' << std::flush;
}

} // namespace qrv::batch
