#include "Source/Tools/batch/Conversion/Conversion.h"

#include "Platform/Foundation/FileReplacement.h"
#include "Source/Tools/Common/SHA256.h"
#include "Source/Tools/batch/Children/ChildProcess.h"
#include "Source/Tools/batch/Children/PDFReader.h"
#include "Source/Tools/batch/Conversion/BatchError.h"
#include "Source/Tools/batch/Conversion/FreshFile.h"
#include "Source/Tools/batch/Conversion/ToolAnswer.h"

#include <charconv>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace qrv::batch {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/// The tool keeps its deadline within a second; after this one it is killed.
constexpr auto graceAfterDeadline = 10s;

constexpr std::size_t mostLog = std::size_t{16} << 20;

struct Stopped {};

std::string secondsOf(std::chrono::milliseconds time) {
    return std::to_string(static_cast<double>(time.count()) / 1000);
}

ChildCommand toolCommand(const Record& record, const std::string& pdf, const ConversionOptions& options,
                         std::int64_t attempt) {
    ChildCommand command;
    command.program = options.tool;
    command.arguments = {options.mode, record.archive, pdf, record.sha256};
    command.variables = {{"OutPath", std::nullopt}};
    const auto set = [&command](const char* name, std::string value) {
        command.variables.emplace_back(name, std::move(value));
    };
    if (options.timeLimit) {
        set("WEB2PDF_DEADLINE", secondsOf(*options.timeLimit));
        command.timeLimit = *options.timeLimit + graceAfterDeadline;
    } else {
        command.variables.emplace_back("WEB2PDF_DEADLINE", std::nullopt);
    }
    if (options.memoryLimit && attempt == 1)
        set("WEB2PDF_MEMORY_LIMIT", std::to_string(*options.memoryLimit >> 20));
    if (options.writesXMP) set("WEB2PDF_XMP", "1");
    if (options.attachesArchive) set("WEB2PDF_ATTACH_ARCHIVE", "1");
    command.mostOutput = mostLog;
    return command;
}

/// What the program says of the new PDF.
ChildEnd readPDF(const std::string& program, std::vector<std::string> arguments, const std::string& pdf,
                 const std::stop_token& stop) {
    ChildEnd end = runPDFReader(program, std::move(arguments), pdf, stop);
    if (end.kind == ChildEnd::Kind::stopped) throw Stopped();
    return end;
}

std::optional<ConversionError> errorOf(const ChildEnd& end) {
    switch (end.kind) {
    case ChildEnd::Kind::stopped:
        throw Stopped();
    case ChildEnd::Kind::notStarted:
        return batchError(BatchNotStartedError, "web2pdf " + end.text());
    case ChildEnd::Kind::timedOut:
        return batchError(BatchTimedOutError, "web2pdf " + end.text());
    case ChildEnd::Kind::ended:
        break;
    }
    const std::optional<ToolAnswer> answer = answerOfTool(end.output);
    return answer ? answer->error
                  : batchError(BatchToolEndedError, "web2pdf " + end.text() + " without an answer");
}

bool isFileWithContents(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(fs::symlink_status(path, error)) && fs::file_size(path, error) > 0 && !error;
}

/// Nothing for a file that the program does not read, such as one that asks for a password.
std::optional<std::int64_t> pagesOf(const std::string& pdf, const ConversionOptions& options,
                                    const std::stop_token& stop) {
    if (options.pdfinfo.empty()) return std::nullopt;
    const std::string output = "\n" + readPDF(options.pdfinfo, {pdf}, pdf, stop).output;
    constexpr std::string_view label = "\nPages:";
    // The last one: texts of the file's own stand before it.
    const std::size_t found = output.rfind(label);
    if (found == std::string::npos) return std::nullopt;
    const std::size_t start = output.find_first_not_of(' ', found + label.size());
    std::int64_t pages = 0;
    if (start == std::string::npos ||
        std::from_chars(output.data() + start, output.data() + output.size(), pages).ec != std::errc())
        return std::nullopt;
    return pages;
}

/// Where the text of a PDF's pages goes.
std::string textPathOf(const std::string& pdf) {
    return fs::path(pdf).replace_extension(".txt").string();
}

std::string now() {
    const std::time_t time = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm utc{};
    gmtime_r(&time, &utc);
    char text[sizeof "2026-11-23T10:05:00Z"];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

std::string wishesOf(const ConversionOptions& options) {
    std::string wishes;
    const auto add = [&wishes](bool isWished, const char* name) {
        if (isWished) wishes += (wishes.empty() ? "" : ",") + std::string(name);
    };
    add(options.writesXMP, "xmp");
    add(options.attachesArchive, "attach");
    add(options.writesText, "text");
    return wishes;
}

/// One conversion, attempt after attempt.
class Converting {
public:
    Converting(Record& record, const ConversionOptions& options, const std::stop_token& stop)
        : record_(record), options_(options), stop_(stop), pdf_(options.output, record.pdf) {}

    void run() {
        record_.error = pdf_.prepare();
        if (record_.error) return;
        do {
            record_.error = attempt();
        } while (record_.error && canPass(*record_.error) && record_.attempts <= options_.retries);
        if (!record_.error) record_.error = complete();
    }

private:
    std::optional<ConversionError> attempt() {
        ++record_.attempts;
        pdf_.discard();
        const ChildEnd end = runChild(toolCommand(record_, pdf_.path(), options_, record_.attempts), stop_);
        if (auto error = errorOf(end)) return error;
        if (!isFileWithContents(pdf_.path()))
            return batchError(BatchNoPDFError, "web2pdf has written no PDF");
        MissingResources missing = missingInLog(end.errors);
        record_.missingCount = missing.count;
        record_.missing = std::move(missing.named);
        return std::nullopt;
    }

    /// From the new file to the one in its place.
    std::optional<ConversionError> complete() {
        if (options_.isStrict && record_.missingCount > 0)
            return batchError(BatchMissingError, missingText());
        const std::optional<std::int64_t> pages = pagesOf(pdf_.path(), options_, stop_);
        if (options_.writesText) {
            if (auto error = writeText()) return error;
        }
        const std::optional<std::string> hash = sha256OfFile(pdf_.path());
        if (!hash) return batchError(BatchFileError, record_.pdf + ": " + std::strerror(errno));
        if (auto error = pdf_.moveIntoPlace()) return error;
        record_.pages = pages;
        record_.pdfSha256 = *hash;
        std::error_code unknown;
        record_.pdfSize = static_cast<std::int64_t>(fs::file_size(pdf_.place(), unknown));
        return std::nullopt;
    }

    std::string missingText() const {
        std::string text = std::to_string(record_.missingCount) + " missing: ";
        for (std::size_t i = 0; i < record_.missing.size(); ++i)
            text += (i == 0 ? "" : ", ") + record_.missing[i].kind + " " + record_.missing[i].address;
        return text;
    }

    /// A PDF that nobody may read without its password has none.
    std::optional<ConversionError> writeText() {
        FreshFile text(options_.output, textPathOf(record_.pdf));
        if (auto error = text.prepare()) return error;
        const ChildEnd end =
            readPDF(options_.pdftotext, {"-enc", "UTF-8", pdf_.path(), "-"}, pdf_.path(), stop_);
        if (!end.succeeded()) return std::nullopt;
        if (const int error = replaceFile(text.path(), end.output))
            return batchError(BatchFileError, text.place() + ": " + std::strerror(error));
        if (auto error = text.moveIntoPlace()) return error;
        record_.text = textPathOf(record_.pdf);
        return std::nullopt;
    }

    Record& record_;
    const ConversionOptions& options_;
    const std::stop_token& stop_;
    FreshFile pdf_;
};

} // namespace

Record recordToBe(const Item& item, const ConversionOptions& options) {
    Record record;
    record.archive = item.archive;
    record.pdf = item.pdf;
    record.mode = options.mode;
    record.wishes = wishesOf(options);
    record.sha256 = sha256OfFile(item.archive).value_or(""); // the tool says why it cannot be read
    return record;
}

std::optional<Record> convert(Record record, const ConversionOptions& options, const std::stop_token& stop) {
    const Clock::time_point start = Clock::now();
    try {
        Converting(record, options, stop).run();
    } catch (const Stopped&) {
        return std::nullopt;
    }
    record.milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
    record.finished = now();
    return record;
}

std::optional<Record> copyConverted(const Record& from, const Record& to, const ConversionOptions& options) {
    FreshFile copy(options.output, to.pdf);
    if (copy.prepare()) return std::nullopt;
    std::error_code error;
    fs::copy_file(fs::path(options.output) / from.pdf, copy.path(), error);
    if (error || sha256OfFile(copy.path()) != from.pdfSha256 || copy.moveIntoPlace()) return std::nullopt;
    Record record = from;
    record.archive = to.archive;
    record.pdf = to.pdf;
    record.finished = now();
    return record;
}

void removeText(const std::string& output, const std::string& pdf) {
    std::error_code ignored;
    fs::remove(fs::path(output) / textPathOf(pdf), ignored);
}

bool isWhole(const Record& record, const std::string& output) {
    std::error_code unknown;
    return record.isConverted() &&
           (record.text.empty() || fs::exists(fs::path(output) / record.text, unknown)) &&
           sha256OfFile((fs::path(output) / record.pdf).string()) == record.pdfSha256;
}

} // namespace qrv::batch
