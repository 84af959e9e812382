#include "Source/Tools/batch/ReportRun.h"

#include "Platform/Foundation/FileReplacement.h"
#include "Source/Tools/batch/Program.h"
#include "Source/Tools/batch/Report/Report.h"
#include "Source/Tools/batch/Results/History.h"

#include <cstring>
#include <future>

namespace qrv::batch {

using namespace std::chrono_literals;

namespace {

void makeReport(std::vector<ReportItem> items, const History& history, const Options& options,
                std::size_t jobs, Interruption& interruption) {
    std::stop_source stop;
    std::future<void> made = std::async(std::launch::async, [&] {
        const auto whole = [&history](const Record& record) { return history.whole(record); };
        writeReport(*options.report, {std::move(items), whole, *options.output, jobs}, stop.get_token());
    });
    while (made.wait_for(100ms) != std::future_status::ready) {
        if (interruption.waitFor(0ms)) stop.request_stop();
    }
    made.get();
}

} // namespace

void requireReport(const Options& options) {
    if (!options.report) return;
    if (const int refusal = refusalToWrite(*options.report))
        throw UsageError(*options.report + ": " + std::strerror(refusal));
}

void reportOn(const std::vector<Item>& items, const Options& options, std::size_t jobs,
              Interruption& interruption) {
    const History history(*options.output, {});
    std::vector<ReportItem> reported;
    for (const Item& item : items) {
        if (const Record* const record = history.of(item.pdf)) reported.push_back({item.archive, record});
    }
    makeReport(std::move(reported), history, options, jobs, interruption);
}

int reportOnFolder(const Options& options, std::size_t jobs) {
    Interruption interruption; // before there are threads
    const History history(*options.output, {});
    std::vector<ReportItem> items;
    for (const Record* record : history.all()) items.push_back({record->archive, record});
    if (items.empty()) throw Failure("there are no results in " + *options.output);
    makeReport(std::move(items), history, options, jobs, interruption);
    return interruption.hasCome() ? static_cast<int>(interrupted) : success;
}

} // namespace qrv::batch
