#pragma once

// Answers the engine's requests from an archive, and from nothing else: what the archive does not hold fails
// at once.

#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Engine/Archive/ArchiveIndex.h"
#include "Platform/Engine/Archive/MissingResources.h"
#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Engine/Loading/FrameTracker.h"
#include "Platform/Engine/Loading/PageClient.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qrv::engine {

class RequestServer {
public:
    /// All must outlive the server.
    RequestServer(DevToolsClient& devTools, FrameTracker& frames, PageClient& client);

    /// Intercepts every request of a page's or a worker's session.
    void attach(const std::string& session);

    /// The engine's name of the page's session and of its main frame.
    void setPage(std::string session, std::string mainFrameID);

    /// What to answer from. The main page is stored under `address`'s stored URL.
    void serve(const WebArchive& archive, const StandInAddress& address);

    /// Puts the stored pages of frames without an address into the blank frames of the page; `done` is called
    /// when the engine has them all.
    void fillBlankFrames(std::function<void()> done);

    /// Requests that have been answered, and that have been made.
    std::size_t answered() const { return answered_; }

    std::size_t asked() const { return asked_; }

    /// What the archive holds of the addresses among which an image was chosen, if it does not hold the
    /// chosen one, which then counts as missing no longer. Addresses are the engine's.
    std::vector<std::string> substitutesFor(const std::string& chosen,
                                            const std::vector<std::string>& candidates);

    /// What was asked for and is not in the archive.
    const MissingResources& missing() const { return missing_; }

private:
    using Node = ArchiveIndex::Node;
    using Names = std::map<std::string, std::string>; // engine's frame -> its name

    struct Request {
        std::string session;
        std::string identifier;
        std::string frame;     // empty for a worker's
        std::string engineURL; // as the engine asks
        std::string url;       // as the archive knows it
        std::string origin;
        std::string headers; // that it asks leave for
        std::string type;    // what it is for, in the engine's word
        bool isDocument = false;
    };

    void requestPaused(const std::string& session, const Json& event);
    void authenticationRequired(const std::string& session, const Json& event);
    void answerDocument(const Request& request);
    void answerFrameDocument(const Request& request);
    void answer(const Request& request, const WebResource& resource);
    void fail(const Request& request);
    bool holds(const std::string& engineURL) const;
    NSData bodyOf(const WebResource& resource) const;
    void queryNames(std::function<void(const Names&)> answer);
    void fillFrame(const std::string& frame, Node node, std::function<void()> filled);
    Node nodeOf(const std::string& frame) const;

    DevToolsClient& devTools_;
    FrameTracker& frames_;
    PageClient& client_;
    std::string pageSession_;
    std::string mainFrameID_;
    std::optional<ArchiveIndex> index_;
    std::optional<StandInAddress> address_;
    std::map<std::string, Node> nodes_; // engine's frame -> the archive that it shows
    std::size_t asked_ = 0;
    std::size_t answered_ = 0;
    MissingResources missing_;
    std::vector<DevToolsClient::Subscription> subscriptions_;
};

} // namespace qrv::engine
