#include "Platform/Engine/Archive/RequestServer.h"

#include "Platform/Engine/Archive/ReferenceRewriter.h"
#include "Platform/Engine/Archive/ResourceResponse.h"
#include "Platform/Foundation/URLPieces.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <iterator>

namespace qrv::engine {

namespace {

/// Header names keep the case in which the page wrote them.
std::string originOf(const Json& headers) {
    for (const char* name : {"Origin", "origin"}) {
        if (std::string value = headers[name].string(); !value.empty()) return value;
    }
    return {};
}

void collectNames(const Json& tree, std::map<std::string, std::string>& names) {
    // Uses an explicit stack: frames may be nested too deep for recursion.
    std::vector<Json> open{tree};
    while (!open.empty()) {
        const Json node = std::move(open.back());
        open.pop_back();
        names[node["frame"]["id"].string()] = node["frame"]["name"].string();
        for (const Json& child : node["childFrames"].elements()) open.push_back(child);
    }
}

} // namespace

RequestServer::RequestServer(DevToolsClient& devTools, FrameTracker& frames, PageClient& client)
    : devTools_(devTools), frames_(frames), client_(client) {}

void RequestServer::setPage(std::string session, std::string mainFrameID) {
    pageSession_ = std::move(session);
    mainFrameID_ = std::move(mainFrameID);
    attach(pageSession_);
}

void RequestServer::attach(const std::string& session) {
    subscriptions_.push_back(
        devTools_.listen(session, "Fetch.requestPaused",
                         [this, session](const Json& event) { requestPaused(session, event); }));
    subscriptions_.push_back(
        devTools_.listen(session, "Fetch.authRequired",
                         [this, session](const Json& event) { authenticationRequired(session, event); }));
    devTools_.send(session, "Fetch.enable",
                   Json::object({{"patterns", Json::array({Json::object({{"urlPattern", "*"}})})},
                                 {"handleAuthRequests", true}}));
}

void RequestServer::serve(const WebArchive& archive, const StandInAddress& address) {
    index_.emplace(archive);
    address_ = address;
    nodes_ = {{mainFrameID_, ArchiveIndex::root}};
}

/// Workers and unknown frames see the main page's resources.
RequestServer::Node RequestServer::nodeOf(const std::string& frame) const {
    std::optional<std::string> at = frame;
    while (at) {
        if (const auto found = nodes_.find(*at); found != nodes_.end()) return found->second;
        at = frames_.parentOf(*at);
    }
    return ArchiveIndex::root;
}

void RequestServer::requestPaused(const std::string& session, const Json& event) {
    const Json wanted = event["request"];
    Request request{.session = session,
                    .identifier = event["requestId"].string(),
                    .frame = event["frameId"].string(),
                    .engineURL = wanted["url"].string(),
                    .url = {},
                    .origin = originOf(wanted["headers"]),
                    .headers = wanted["headers"]["Access-Control-Request-Headers"].string(),
                    .type = event["resourceType"].string(),
                    .isDocument = event["resourceType"].string() == "Document"};
    ++asked_;
    if (!index_) {
        fail(request);
        return;
    }
    request.url = address_->storedURL(request.engineURL);
    if (request.isDocument) {
        answerDocument(request);
    } else {
        answer(request, index_->resource(nodeOf(request.frame), request.url));
    }
}

void RequestServer::answerDocument(const Request& request) {
    if (frames_.isRefused(request.frame)) {
        fail(request);
    } else if (request.frame != mainFrameID_) {
        answerFrameDocument(request);
    } else if (withoutFragment(request.engineURL) == withoutFragment(address_->engineURL())) {
        answer(request, index_->mainResource(ArchiveIndex::root));
    } else {
        answer(request, index_->resource(ArchiveIndex::root, request.url));
    }
}

void RequestServer::answerFrameDocument(const Request& request) {
    const Node parent = nodeOf(frames_.parentOf(request.frame).value_or(mainFrameID_));
    // A frame that already has its archive and navigates on must not get another frame's.
    if (nodes_.contains(request.frame) || !index_->hasFramesLeft(parent)) {
        answer(request, index_->resource(nodeOf(request.frame), request.url));
        return;
    }
    const auto answerWith = [this, request, parent](const Names& names) {
        const auto name = names.find(request.frame);
        const auto taken =
            index_->takeFrame(parent, name == names.end() ? std::string() : name->second, request.url);
        if (taken) nodes_[request.frame] = *taken;
        answer(request,
               taken ? index_->mainResource(*taken) : index_->resource(nodeOf(request.frame), request.url));
    };
    if (index_->hasNamedFramesLeft(parent)) {
        queryNames(answerWith);
    } else {
        answerWith({});
    }
}

void RequestServer::answer(const Request& request, const WebResource& stored) {
    const bool isLeftToSource = !stored && source_ && !MissingResources::isOnlySent(request.type);
    const WebResource resource = isLeftToSource ? source_(request.url) : stored;
    if (!resource) missing_.add(request.type, request.url);
    // The engine begins a download before it refuses it, and may leave a temporary file of it when it is
    // ended.
    const bool isDownload = request.isDocument && MIMEType(resource.MIMEType().utf8()).isDownload();
    if (!resource || isDownload) {
        fail(request);
        return;
    }
    ++answered_;
    if (recorder_) {
        const NSString address = resource.URL().absoluteString();
        recorder_->answered({request.frame, request.engineURL, address ? address.utf8() : request.url,
                             request.isDocument, resource});
    }
    if (MIMEType(resource.MIMEType().utf8()).isImage()) {
        givenImages_.insert(resource.URL().absoluteString().utf8());
    }
    const ResourceRequest asked{.url = request.engineURL,
                                .origin = request.origin,
                                .headers = request.headers,
                                .isDocument = request.isDocument};
    devTools_.send(request.session, "Fetch.fulfillRequest",
                   Json::object({{"requestId", request.identifier},
                                 {"responseCode", 200},
                                 {"responseHeaders", responseHeaders(resource, asked)},
                                 {"body", bodyOf(resource)}}),
                   [this, request](const DevToolsReply& reply) {
                       if (reply.status == DevToolsReply::Status::tooLarge) refuse(request);
                   });
}

/// Returns the stored bytes, with references to the synthetic origin.
NSData RequestServer::bodyOf(const WebResource& resource) const {
    const auto stems = address_->stems();
    const auto syntax = referenceSyntax(MIMEType(resource.MIMEType().utf8()));
    if (stems.empty() || syntax == ReferenceSyntax::none) return resource.data();
    return NSData(withReplacedReferences(resource.data().bytes(), syntax, stems, address_->prefix()));
}

void RequestServer::fail(const Request& request) {
    ++answered_;
    refuse(request);
}

/// Aborts documents rather than failing them: the old page stays, a frame stays blank, and the engine shows
/// no error page.
void RequestServer::refuse(const Request& request) {
    devTools_.send(request.session, "Fetch.failRequest",
                   Json::object({{"requestId", request.identifier},
                                 {"errorReason", request.isDocument ? "Aborted" : "Failed"}}));
}

bool RequestServer::holds(const std::string& engineURL) const {
    return index_ && index_->resource(ArchiveIndex::root, address_->storedURL(engineURL));
}

bool RequestServer::mayHaveOtherPictures() const {
    return index_ && missing_.hasImages() && givenImages_.size() < index_->imageCount();
}

void RequestServer::dismissPicture(const std::string& engineURL) {
    if (address_) missing_.remove("Image", address_->storedURL(engineURL));
}

std::vector<std::string> RequestServer::substitutesFor(const std::string& chosen,
                                                       const std::vector<std::string>& candidates) {
    std::vector<std::string> held;
    if (!index_ || holds(chosen)) return held;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(held),
                 [this](const std::string& candidate) { return holds(candidate); });
    if (!held.empty()) dismissPicture(chosen);
    return held;
}

void RequestServer::authenticationRequired(const std::string& session, const Json& event) {
    const std::string frame = event["frameId"].string();
    client_.authenticationRequired(
        frame == mainFrameID_ ? FrameID(mainFrame) : frame,
        NSURL::URLWithString(NSString::fromUTF8(event["request"]["url"].string())));
    devTools_.send(session, "Fetch.continueWithAuth",
                   Json::object({{"requestId", event["requestId"]},
                                 {"authChallengeResponse", Json::object({{"response", "CancelAuth"}})}}));
}

/// Each answer tells of all frames. What is asked while one is awaited waits for the next, which is sure to
/// tell of a frame that has come since.
void RequestServer::queryNames(NameQuery answer) {
    const bool isAwaited = !nameQueries_.empty();
    nameQueries_.push_back(std::move(answer));
    if (!isAwaited) sendNameQuery();
}

void RequestServer::sendNameQuery() {
    devTools_.send(pageSession_, "Page.getFrameTree", {},
                   [this, count = nameQueries_.size()](const DevToolsReply& reply) {
                       Names names;
                       collectNames(reply.result["frameTree"], names);
                       const auto answered = nameQueries_.begin() + static_cast<std::ptrdiff_t>(count);
                       const std::vector<NameQuery> queries(nameQueries_.begin(), answered);
                       nameQueries_.erase(nameQueries_.begin(), answered);
                       if (!nameQueries_.empty()) sendNameQuery();
                       for (const NameQuery& query : queries) query(names);
                   });
}

void RequestServer::fillBlankFrames(std::function<void()> done) {
    std::vector<std::string> blank = index_ ? frames_.blankFrames() : std::vector<std::string>();
    std::erase_if(blank, [this](const std::string& frame) {
        return nodes_.contains(frame) || !index_->hasFramesLeft(nodeOf(frame));
    });
    if (blank.empty()) {
        done();
        return;
    }
    queryNames([this, blank = std::move(blank), done = std::move(done)](const Names& names) {
        std::vector<std::pair<std::string, Node>> pages;
        for (const std::string& frame : blank) {
            const auto name = names.find(frame);
            const auto taken =
                index_->takeBlankFrame(nodeOf(frame), name == names.end() ? std::string() : name->second);
            if (taken) pages.emplace_back(frame, *taken);
        }
        if (pages.empty()) {
            done();
            return;
        }
        const auto unfilled = std::make_shared<std::size_t>(pages.size());
        for (const auto& [frame, node] : pages) {
            fillFrame(frame, node, [this, done, unfilled] {
                // A filled frame may have brought blank frames of its own.
                if (--*unfilled == 0) fillBlankFrames(done);
            });
        }
    });
}

void RequestServer::fillFrame(const std::string& frame, Node node, std::function<void()> filled) {
    nodes_[frame] = node;
    const WebResource& page = index_->mainResource(node);
    const std::u16string html = unicode::decodeWebText(bodyOf(page).bytes(), page.textEncodingName().utf8());
    devTools_.send(pageSession_, "Page.setDocumentContent",
                   Json::object({{"frameId", frame}, {"html", unicode::toUTF8Lossy(html)}}),
                   [filled = std::move(filled)](const DevToolsReply&) { filled(); });
}

} // namespace qrv::engine
