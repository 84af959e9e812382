#pragma once

// Fulfils the engine's requests from an archive, and from a source beside it where there is one: requests for
// anything else fail at once.

#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Engine/Archive/ArchiveIndex.h"
#include "Platform/Engine/Archive/MissingResources.h"
#include "Platform/Engine/Archive/PageRecorder.h"
#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Engine/Loading/FrameTracker.h"
#include "Platform/Engine/Loading/PageClient.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qrv::engine {

class RequestServer {
public:
    /// All must outlive the server.
    RequestServer(DevToolsClient& devTools, FrameTracker& frames, PageClient& client);

    /// Intercepts every request of a page's or a worker's session.
    void attach(const std::string& session);

    /// Sets the engine's identifiers of the page's session and main frame.
    void setPage(std::string session, std::string mainFrameID);

    /// Sets the archive to answer from. The main page is stored under `address`'s stored URL.
    void serve(const WebArchive& archive, const StandInAddress& address);

    /// What else there is, by the archive's addresses: asked for what the archive lacks. nil for what is not
    /// to be had, which fails.
    using Source = std::function<WebResource(const std::string& url)>;

    void setSource(Source source) { source_ = std::move(source); }

    /// Is told of every answer from now on, and must outlive the server.
    void setRecorder(PageRecorder* recorder) { recorder_ = recorder; }

    /// Puts the stored pages of frames without an address into the page's blank frames; calls `done` when the
    /// engine has them all.
    void fillBlankFrames(std::function<void()> done);

    /// The number of requests that were answered, and that were made.
    std::size_t answered() const { return answered_; }

    std::size_t asked() const { return asked_; }

    /// Returns those candidate addresses of an image that the archive has, if it lacks the chosen one, which
    /// then no longer counts as missing. Addresses are the engine's.
    std::vector<std::string> substitutesFor(const std::string& chosen,
                                            const std::vector<std::string>& candidates);

    /// Whether pictures are missing, and others are stored for which nobody asked.
    bool mayHaveOtherPictures() const;

    /// Whether a resource is stored, by the engine's address.
    bool holds(const std::string& engineURL) const;

    /// A picture that is missing is not in use any more.
    void dismissPicture(const std::string& engineURL);

    /// What was asked for and is missing in the archive.
    const MissingResources& missing() const { return missing_; }

private:
    using Node = ArchiveIndex::Node;
    using Names = std::map<std::string, std::string>; // engine's frame -> its name
    using NameQuery = std::function<void(const Names&)>;

    struct Request {
        std::string session;
        std::string identifier;
        std::string frame;     // empty for a worker's
        std::string engineURL; // as the engine knows it
        std::string url;       // as the archive knows it
        std::string origin;
        std::string headers; // that a preflight asks permission for
        std::string type;    // the engine's resource type
        bool isDocument = false;
    };

    void requestPaused(const std::string& session, const Json& event);
    void authenticationRequired(const std::string& session, const Json& event);
    void answerDocument(const Request& request);
    void answerFrameDocument(const Request& request);
    void answer(const Request& request, const WebResource& stored);
    void fail(const Request& request);
    void refuse(const Request& request);
    NSData bodyOf(const WebResource& resource) const;
    void queryNames(NameQuery answer);
    void sendNameQuery();
    void fillFrame(const std::string& frame, Node node, std::function<void()> filled);
    Node nodeOf(const std::string& frame) const;

    DevToolsClient& devTools_;
    FrameTracker& frames_;
    PageClient& client_;
    std::string pageSession_;
    std::string mainFrameID_;
    std::optional<ArchiveIndex> index_;
    std::optional<StandInAddress> address_;
    std::map<std::string, Node> nodes_;  // engine's frame -> the archive that it shows
    std::vector<NameQuery> nameQueries_; // the engine's answer to the first of them is awaited
    std::size_t asked_ = 0;
    std::size_t answered_ = 0;
    MissingResources missing_;
    std::set<std::string> givenImages_; // by their stored addresses
    Source source_;
    PageRecorder* recorder_ = nullptr;
    std::vector<DevToolsClient::Subscription> subscriptions_;
};

} // namespace qrv::engine
