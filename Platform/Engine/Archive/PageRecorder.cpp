#include "Platform/Engine/Archive/PageRecorder.h"

#include "Platform/Foundation/URLPieces.h"

#include <algorithm>
#include <utility>

namespace qrv::engine {

namespace {

// As deep as archives are read.
constexpr int greatestDepth = 64;

NSString textOrNil(const std::string& text) {
    return text.empty() ? NSString() : NSString::fromUTF8(text);
}

} // namespace

void PageRecorder::attach(DevToolsClient& devTools, const std::string& session) {
    subscriptions_.push_back(devTools.listen(session, "Network.responseReceived", [this](const Json& event) {
        const Json response = event["response"];
        types_[response["url"].string()] = response["mimeType"].string();
    }));
}

void PageRecorder::answered(const Answer& answer) {
    Frame& frame = frames_[answer.frame];
    keep(answer.isDocument ? frame.documents : frame.resources, answer);
}

void PageRecorder::keep(std::vector<Entry>& entries, const Answer& answer) {
    const auto known = std::find_if(entries.begin(), entries.end(),
                                    [&](const Entry& entry) { return entry.url == answer.url; });
    if (known != entries.end()) entries.erase(known);
    entries.push_back({answer.engineURL, answer.url, answer.resource});
}

WebArchive PageRecorder::archive(const Json& tree, const FrameEncodings& encodings) const {
    std::map<std::string, Frame> left = frames_;
    Parts outer;
    const WebArchive page = archiveOf(tree, encodings, left, outer, 0);
    if (!page) return {};
    Parts all;
    all.resources = page.subresources().elements();
    for (const auto& [frame, recorded] : left) {
        collect(recorded.documents, all);
        collect(recorded.resources, all);
    }
    return WebArchive::initWithMainResource_subresources_subframeArchives(
        page.mainResource(), NSArray(std::move(all.resources)), page.subframeArchives());
}

/// Adds what has no place of its own to the `outer` parts; nil then.
WebArchive PageRecorder::archiveOf(const Json& node, const FrameEncodings& encodings,
                                   std::map<std::string, Frame>& left, Parts& outer, int depth) const {
    if (depth > greatestDepth) return {};
    const Json frame = node["frame"];
    const std::string identifier = frame["id"].string();
    const auto taken = left.extract(identifier);
    const Frame recorded = taken.empty() ? Frame() : taken.mapped();
    const auto encoding = encodings.find(identifier);
    const WebResource main = mainResource(frame, recorded.documents,
                                          encoding == encodings.end() ? std::string() : encoding->second);
    Parts own;
    Parts& parts = main ? own : outer;
    collect(recorded.resources, parts);
    for (const Json& child : node["childFrames"].elements()) {
        const WebArchive inner = archiveOf(child, encodings, left, parts, depth + 1);
        if (inner) parts.frames.push_back(inner);
    }
    return WebArchive::initWithMainResource_subresources_subframeArchives(
        main, NSArray(std::move(own.resources)), NSArray(std::move(own.frames)));
}

WebResource PageRecorder::mainResource(const Json& frame, const std::vector<Entry>& documents,
                                       const std::string& encoding) const {
    const std::string url = frame["url"].string();
    auto shown = std::find_if(documents.rbegin(), documents.rend(), [&](const Entry& entry) {
        return withoutFragment(entry.engineURL) == withoutFragment(url);
    });
    // A page may change its own address after it was loaded.
    if (shown == documents.rend()) shown = documents.rbegin();
    return shown == documents.rend() ? WebResource() : stored(*shown, encoding, frame["name"].string());
}

/// The archive's own fields count, where it has them.
WebResource PageRecorder::stored(const Entry& entry, const std::string& encoding,
                                 const std::string& name) const {
    const WebResource& given = entry.resource;
    NSString type = given.MIMEType();
    if (type.length() == 0) {
        const auto found = types_.find(entry.engineURL);
        type =
            found == types_.end() ? NSString(u"application/octet-stream") : NSString::fromUTF8(found->second);
    }
    return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        given.data(), NSURL::URLWithString(NSString::fromUTF8(entry.url)), type,
        given.textEncodingName().length() > 0 ? given.textEncodingName() : textOrNil(encoding),
        textOrNil(name));
}

void PageRecorder::collect(const std::vector<Entry>& entries, Parts& parts) const {
    for (const Entry& entry : entries) parts.resources.push_back(stored(entry));
}

} // namespace qrv::engine
