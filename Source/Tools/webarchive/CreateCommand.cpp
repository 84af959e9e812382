#include "Source/Tools/webarchive/CreateCommand.h"

#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Logging/NSLog.h"
#include "Platform/WebKit/WebRecorder.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/webarchive/Creating/FileTypes.h"
#include "Source/Tools/webarchive/Creating/MHTMLFile.h"
#include "Source/Tools/webarchive/Creating/PageFile.h"
#include "Source/Tools/webarchive/Creating/PageFolder.h"
#include "Source/Tools/webarchive/Output/OutputFile.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <set>
#include <utility>

namespace qrv::webarchive {

namespace {

struct Options {
    std::string page;
    std::string archive;
    std::optional<std::string> root;
    std::optional<std::string> url;
    bool strict = false;
    bool xml = false;
};

/// Says, once for each, what the page asks for and does not get.
class Misses {
public:
    void add(const NSURL& url, const PageFolder::File& file) {
        const std::string name = file.name.empty() ? url.absoluteString().utf8() : file.name;
        if (!told_.insert(name).second) return;
        std::cerr << "webarchive: " << shown(name + ": " + file.refusal) << '\n';
    }

    bool isEmpty() const { return told_.empty(); }

private:
    std::set<std::string> told_;
};

NSURL addressOf(const std::string& page, const std::optional<std::string>& given) {
    if (!given) {
        const std::string path = std::filesystem::absolute(page).lexically_normal();
        return NSURL::fileURLWithPath_isDirectory(NSString::fromFileSystem(path), false);
    }
    const NSURL url = NSURL::URLWithString(NSString::fromUTF8(engine::normalizedURL(*given)));
    const std::string scheme = engine::schemeOf(*given);
    const bool isUsable = scheme == "file" || ((scheme == "http" || scheme == "https") && url.host());
    if (!isUsable) throw Failure(*given + " is no address of a page");
    return url;
}

WebResource resourceOf(const NSData& bytes, const NSURL& url, std::string_view name) {
    return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        bytes, url, NSString::fromUTF8(typeOfFile(name)), {}, {});
}

/// The engine and what it gets are the only ones that this has to do with from here on.
void confine(const std::string& output) {
    FileRules rules = rulesForOutput(output);
    WebRecorder::allowRecorders(rules);
    if (!rules.enforce()) NSLog(u"no file rules (%s)", std::strerror(errno));
}

void write(const WebArchive& archive, const Options& options) {
    const NSData data =
        archive.dataInFormat(options.xml ? NSPropertyListXMLFormat_v1_0 : NSPropertyListBinaryFormat_v1_0);
    if (!data) throw Failure("the archive has a text that XML cannot hold");
    writeOutput(options.archive, data);
}

WebArchive recorded(WebRecorder& recorder, const WebArchive& page, const WebRecorder::Source& source) {
    NSError error;
    WebArchive archive = recorder.archiveOfPage(page, source, &error);
    if (archive) return archive;
    const bool isRefused =
        error.domain() == NSString(NSURLErrorDomain) && error.code() == NSURLErrorCancelled;
    throw Failure("the page cannot be loaded: " +
                  (isRefused ? "it is of a kind that is not shown" : error.localizedDescription().utf8()));
}

/// The page, and its files as it asks for them.
WebArchive createFromFiles(const Options& options, const std::string& page, const NSURL& url,
                           Misses& misses) {
    const NSData bytes = readFile(page);
    const PageFolder folder(page, options.root.value_or(""), url);
    WebRecorder recorder;
    confine(options.archive);
    const WebArchive loaded =
        WebArchive::initWithMainResource_subresources_subframeArchives(resourceOf(bytes, url, page), {}, {});
    return recorded(recorder, loaded, [&](const NSURL& wanted) -> WebResource {
        const PageFolder::File file = folder.fileAt(wanted);
        if (file.bytes) return resourceOf(file.bytes, wanted, file.name);
        misses.add(wanted, file);
        return {};
    });
}

/// The page shows which part belongs to which frame.
WebArchive createFromMHTML(const Options& options, const std::string& page, const NSURL& url,
                           Misses& misses) {
    WebRecorder recorder;
    confine(options.archive);
    const WebArchive loaded = archiveOfMHTMLFile(page, url);
    const WebArchive archive = recorded(recorder, loaded, [&](const NSURL& wanted) -> WebResource {
        misses.add(wanted, {.name = {}, .bytes = {}, .refusal = "it is not in the file"});
        return {};
    });
    return withUnusedParts(archive, loaded);
}

int create(const Options& options) {
    const std::string page = pageFileAt(options.page);
    const NSURL url = addressOf(page, options.url);
    requireOutput(options.archive, page);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
    Misses misses;
    const WebArchive archive = isMHTMLFile(page) ? createFromMHTML(options, page, url, misses)
                                                 : createFromFiles(options, page, url, misses);
    if (options.strict && !misses.isEmpty()) throw Failure("nothing was written, since files are missing");
    write(archive, options);
    return success;
}

} // namespace

void addCreateCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command =
        commands.add("create", "Makes a web archive of a page on disk", [=] { return create(*options); });
    command.positional(options->page, "PAGE",
                       "The page's file, or the folder that it was saved in, or an MHTML file");
    command.positional(options->archive, "ARCHIVE", "The web archive to write");
    command.option(options->root, "--root",
                   "The folder that the page's files are in; that of the page if not given");
    command.option(options->url, "--url", "The page's address; that of its file if not given");
    command.flag(options->strict, "--strict", "Write nothing if a file that the page asks for is missing");
    command.flag(options->xml, "--xml", "Write an XML property list instead of a binary one");
}

} // namespace qrv::webarchive
