// Any bytes as a web archive: there is a reason where it is none; what it holds is found again in its index,
// each frame is given once, and what goes into the headers of an answer cannot begin another one.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/Address/MIMEType.h"
#include "Platform/Engine/Archive/ArchiveIndex.h"
#include "Platform/Engine/Archive/MissingResources.h"
#include "Platform/Engine/Archive/ResourceResponse.h"

#include <set>

using namespace qrv;
using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

constexpr std::size_t mostLookedUp = 200; // so that large archives do not take long

bool isHeaderValue(const std::string& text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos;
}

void checkResponse(const WebResource& resource, const std::string& url) {
    for (const bool isDocument : {false, true}) {
        require(isHeaderValue(contentType(resource, isDocument)));
        const Json headers = responseHeaders(
            resource, {.url = url, .origin = "http://a", .headers = "x-a", .isDocument = isDocument});
        for (const Json& header : headers.elements()) require(isHeaderValue(header["value"].string()));
    }
}

void checkResource(const ArchiveIndex& index, const WebResource& resource, MissingResources& missing) {
    const std::string url = resource.URL().absoluteString().utf8();
    if (url.empty()) return;
    require(!index.resource(ArchiveIndex::root, url).isNil());
    checkResponse(resource, url);
    missing.add(resource.MIMEType().utf8(), url);
}

std::size_t framesIn(const WebArchive& archive) {
    std::size_t count = 0;
    for (const id& frame : archive.subframeArchives()) count += 1 + framesIn(as<WebArchive>(frame));
    return count;
}

/// Takes the frames of the root's page, by the names and addresses of the archive.
void checkFrames(ArchiveIndex& index, const WebArchive& archive) {
    const NSArray frames = archive.subframeArchives();
    std::set<ArchiveIndex::Node> taken;
    for (std::size_t i = 0; i < std::min(frames.count(), mostLookedUp); ++i) {
        const WebResource main = as<WebArchive>(frames.objectAtIndex(i)).mainResource();
        const std::string name = main.frameName().utf8();
        auto frame = index.takeFrame(ArchiveIndex::root, name, main.URL().absoluteString().utf8());
        if (!frame) frame = index.takeBlankFrame(ArchiveIndex::root, name);
        require(!frame || taken.insert(*frame).second);
        require(!frame || !index.mainResource(*frame).isNil());
    }
    require(index.hasFramesLeft(ArchiveIndex::root) == (taken.size() < frames.count()));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    WebArchiveProblems problems;
    const NSData file(std::string(FuzzInput(bytes, size).rest()));
    const WebArchive archive = WebArchive::initWithData(file, &problems);
    require(archive || problems.count > 0);
    for (const WebArchiveProblem& problem : problems.kept)
        require(archive.isNil() == (problem.loss == WebArchiveProblem::Loss::archive));
    if (!archive) return 0;
    require(framesIn(archive) <= 10'000);
    ArchiveIndex index(archive);
    MissingResources missing;
    checkResource(index, archive.mainResource(), missing);
    const NSArray resources = archive.subresources();
    for (std::size_t i = 0; i < std::min(resources.count(), mostLookedUp); ++i)
        checkResource(index, as<WebResource>(resources.objectAtIndex(i)), missing);
    require(isHeaderValue(missing.description()));
    index.resource(ArchiveIndex::root, "http://absent/%zz");
    checkFrames(index, archive);
    return 0;
}
