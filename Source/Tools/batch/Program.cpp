#include "Source/Tools/batch/Program.h"

#include "Platform/Engine/Process/EngineLocator.h"
#include "Platform/Engine/Process/Machine.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "QRVFoundation/Source/NSUserDefaults+QRV.h"
#include "Source/Tools/Common/SettingsDomain.h"
#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/batch/Batch.h"
#include "Source/Tools/batch/Children/ChildProcess.h"
#include "Source/Tools/batch/Doctor/Doctor.h"
#include "Source/Tools/batch/Interruption.h"
#include "Source/Tools/batch/Jobs.h"
#include "Source/Tools/batch/Progress/ProgressLog.h"
#include "Source/Tools/batch/ReportRun.h"
#include "Source/Tools/batch/Results/Manifest.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <unistd.h>

namespace qrv::batch {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

bool setting(const char16_t* key) {
    return qrvBoolForKey_domain_defaultValue(NSUserDefaults::standardUserDefaults(), NSString(key),
                                             QuillvaneSettingsDomain, false);
}

/// Whoever starts the tool may wish for it in the environment, and it would hear of that from here, too.
bool isWished(bool option, const char16_t* key, const char* variable) {
    const char* const value = std::getenv(variable);
    return option || setting(key) || (value && std::string_view(value) == "1");
}

double quietPeriod() {
    constexpr long long usual = 2;
    return static_cast<double>(qrvIntegerForKey_domain_defaultValue(
        NSUserDefaults::standardUserDefaults(), u"WebToolExtraLoadingTime", QuillvaneSettingsDomain, usual));
}

/// Empty if there is none.
std::string findTool(const Options& options) {
    std::error_code unknown;
    if (options.tool) return fs::absolute(*options.tool, unknown).string();
    const fs::path own = fs::read_symlink("/proc/self/exe", unknown).parent_path();
    const auto beside = engine::programInPath(own.string(), "web2pdf");
    return beside ? *beside : engine::programInPath("web2pdf").value_or("");
}

bool isProgram(const std::string& path) {
    std::error_code unknown;
    return fs::is_regular_file(path, unknown) && ::access(path.c_str(), X_OK) == 0;
}

std::string toolFor(const Options& options) {
    const std::string tool = findTool(options);
    if (options.tool && !isProgram(tool)) throw UsageError("--tool: " + *options.tool + " is no program");
    if (tool.empty())
        throw UsageError("there is no web2pdf beside this program or in PATH; --tool says where it is");
    return tool;
}

std::vector<Item> itemsFor(const Options& options, const Shard& shard) {
    std::vector<Item> items;
    try {
        ArchiveList list;
        for (const std::string& source : options.sources) {
            if (source == "-") {
                list.addListed(std::cin, options.isSeparatedByNul ? '\0' : '\n', options.base);
            } else {
                list.addSource(source);
            }
        }
        items = std::move(list).items();
    } catch (const Failure& error) {
        throw UsageError(error.what());
    }
    std::erase_if(items, [&shard](const Item& item) { return !shard.holds(item.pdf); });
    return items;
}

ConversionOptions conversionFor(const Options& options, std::size_t jobs) {
    constexpr std::int64_t usualSeconds = 120;
    ConversionOptions conversion;
    conversion.tool = toolFor(options);
    conversion.output = *options.output;
    conversion.mode = options.mode;
    const std::int64_t seconds = options.timeout.value_or(usualSeconds);
    if (seconds > 0) conversion.timeLimit = std::chrono::seconds(seconds);
    if (options.retries) conversion.retries = *options.retries;
    conversion.isStrict = options.isStrict;
    conversion.writesXMP = isWished(options.writesXMP, u"Web2PDFWritesXMP", "WEB2PDF_XMP");
    conversion.attachesArchive =
        isWished(options.attachesArchive, u"Web2PDFAttachesArchive", "WEB2PDF_ATTACH_ARCHIVE");
    conversion.writesText = options.writesText || setting(u"Web2PDFBatchWritesText");
    if (!std::getenv("WEB2PDF_MEMORY_LIMIT"))
        conversion.memoryLimit = memoryLimitForEach(engine::machineMemory(), jobs);
    conversion.pdfinfo = engine::programInPath("pdfinfo").value_or("");
    conversion.pdftotext = engine::programInPath("pdftotext").value_or("");
    if (conversion.writesText && conversion.pdftotext.empty())
        throw UsageError("there is no pdftotext for the text; it is in the package poppler-utils");
    return conversion;
}

std::size_t jobsFor(const Options& options) {
    if (options.jobs) return static_cast<std::size_t>(*options.jobs);
    return usualJobs(Resources::ofThisMachine(), quietPeriod());
}

Repeats repeatsFor(const Options& options) {
    if (options.convertsAnew) return Repeats::everything;
    return options.retriesFailed ? Repeats::failures : Repeats::nothing;
}

/// What a run would do, a line for each archive.
int showPlan(const std::vector<Item>& items, const Options& options, const Shard& shard) {
    const ConversionOptions conversion = conversionFor(options, jobsFor(options));
    const History history(*options.output, shard);
    const Resumption resumption(history, conversion, repeatsFor(options));
    for (const Item& item : items) {
        const auto known = resumption.known(recordToBe(item, conversion));
        if (options.isQuiet) continue;
        std::cout << (known ? outcomeText(known->record, known->outcome)
                            : "convert   " + shown(item.archive) + " -> " + shown(item.pdf))
                  << '\n';
    }
    if (!std::cout.flush()) throw Failure("standard output cannot be written");
    return success;
}

int convertAll(const std::vector<Item>& items, const Options& options, const Shard& shard) {
    const std::size_t jobs = jobsFor(options);
    const ConversionOptions conversion = conversionFor(options, jobs);
    Interruption interruption; // before there are threads, like the next
    allowManyChildren();
    ResultsFile results(*options.output, shard);
    const History history(*options.output, shard);
    const Resumption resumption(history, conversion, repeatsFor(options));
    const auto progress = makeProgress(Terminal::ofStandardOutput(), options.isQuiet);
    Batch batch(items, jobs, conversion, resumption, results, *progress);
    batch.start();
    while (batch.isUnderWay()) {
        if (interruption.waitFor(100ms)) batch.stop();
    }
    const Tally tally = batch.tally();
    if (options.writesManifest || setting(u"Web2PDFBatchWritesManifest"))
        writeManifest(*options.output, shard);
    if (options.report && !interruption.hasCome()) reportOn(items, options, jobs, interruption);
    if (interruption.hasCome()) return interrupted;
    return tally.allFailed() == 0 ? success : failure;
}

} // namespace

int runProgram(const Options& options) {
    checkOptions(options);
    if (options.asksDoctor) return examineMachine({options.asJson, findTool(options), jobsFor(options)});
    requireReport(options);
    const Shard shard = shardOf(options);
    const std::vector<Item> items = itemsFor(options, shard);
    if (options.isDryRun) return showPlan(items, options, shard);
    if (options.sources.empty()) return reportOnFolder(options, jobsFor(options));
    return convertAll(items, options, shard);
}

} // namespace qrv::batch
