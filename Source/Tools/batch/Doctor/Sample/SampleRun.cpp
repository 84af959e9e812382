#include "Source/Tools/batch/Doctor/Sample/SampleRun.h"

#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/PDFKit/PDFDocument.h"
#include "Platform/PDFKit/PDFFonts.h"
#include "Source/Tools/batch/Children/ChildProcess.h"
#include "Source/Tools/batch/Conversion/ToolAnswer.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <netinet/in.h>
#include <sstream>
#include <sys/socket.h>

namespace qrv::batch {

namespace fs = std::filesystem;

namespace {

/// A new folder for temporary files, with all that is in it.
class Folder {
public:
    Folder() {
        const char* const around = std::getenv("TMPDIR");
        path_ = std::string(around && *around ? around : "/tmp") + "/web2pdf-doctor-XXXXXX";
        if (!::mkdtemp(path_.data())) error_ = path_ + ": " + std::strerror(errno);
    }

    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    ~Folder() {
        std::error_code ignored;
        if (error_.empty()) fs::remove_all(path_, ignored);
    }

    /// Why there is none.
    const std::string& error() const { return error_; }

    std::string pathOf(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
    std::string error_;
};

/// A port of this machine at which nobody calls who is cut off from it.
class Port {
public:
    Port() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const bytes = reinterpret_cast<sockaddr*>(&address);
        if (::bind(socket_.get(), bytes, length) == 0 && ::listen(socket_.get(), 8) == 0 &&
            ::getsockname(socket_.get(), bytes, &length) == 0)
            number_ = ntohs(address.sin_port);
    }

    unsigned number() const { return number_; }

    bool wasCalled() const {
        return FileDescriptor(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC)).get() >= 0;
    }

private:
    FileDescriptor socket_;
    unsigned number_ = 9; // where nobody is
};

/// "2026-11-21 13:26:44.852 web2pdf[7612:7612] text" is a remark, "2026-11-21 13:26:44.852 [subsystem] [area]
/// text" is not.
void readLog(const std::string& log, SampleRun& run) {
    constexpr std::size_t date = sizeof "2026-11-21 13:26:44.852 " - 1;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t end = line.find("] ", std::min(date, line.size()));
        if (end == std::string::npos) continue;
        const bool isRemark = line[date] != '[';
        const std::size_t area = isRemark ? end : line.find("] ", end + 1);
        const std::string text = line.substr((area == std::string::npos ? end : area) + 2);
        run.log.push_back(text);
        if (isRemark) run.remarks.push_back(text);
    }
}

/// Why the tool did not succeed; empty if it did.
std::string errorOf(const ChildEnd& end) {
    if (end.kind != ChildEnd::Kind::ended) return "the tool " + end.text();
    const std::optional<ToolAnswer> answer = answerOfTool(end.output);
    if (!answer) return "the tool " + end.text() + " without an answer";
    return answer->error ? answer->error->text : std::string();
}

} // namespace

SampleRun runSample(const std::string& tool, std::chrono::milliseconds timeLimit,
                    const std::stop_token& stop) {
    SampleRun run;
    const Folder folder;
    const Port port;
    const std::string archive = folder.pathOf("sample.webarchive");
    const std::string pdf = folder.pathOf("sample.pdf");
    run.error = folder.error();
    if (!run.error.empty()) return run;
    if (NSError error;
        !sampleArchive(port.number())
             .writeToFile_options_error(NSString::fromFileSystem(archive), NSDataWritingOptions(), &error)) {
        run.error = error.localizedDescription().utf8();
        return run;
    }

    ChildCommand command;
    command.program = tool;
    command.arguments = {"print", archive, pdf, "doctor"};
    command.variables = {{"OutPath", std::nullopt}, {"WEB2PDF_DEADLINE", std::nullopt}};
    command.timeLimit = timeLimit;
    EngineWatching watching;
    const auto start = std::chrono::steady_clock::now();
    const ChildEnd end = runChild(command, stop);
    run.time =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    run.processes = watching.end();
    run.wasCalled = port.wasCalled();
    readLog(end.errors, run);
    run.error = errorOf(end);
    if (!run.error.empty()) return run;

    const NSString path = NSString::fromFileSystem(pdf);
    const auto document = PDFDocument::initWithURL(NSURL::fileURLWithPath(path));
    if (!document) {
        run.error = "the PDF cannot be read";
        return run;
    }
    run.report = reportInTitle(
        as<NSString>(document->documentAttributes().objectForKey(NSString(PDFDocumentTitleAttribute)))
            .utf8());
    run.fonts = fontsOfPages(NSData::initWithContentsOfFile_options_error(path, 0, nullptr));
    return run;
}

} // namespace qrv::batch
