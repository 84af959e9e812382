#pragma once

// Follows a page's frames through the engine's events and reports the state of their loads to the page's
// owner.
//
// A navigation of a frame causes these events: requested, started navigating, [request paused], navigated,
// stopped loading; a parent stops after its children. Special cases:
// 1. A frame that is blank from the start is navigated without having started.
// 2. Fragment changes, pushState and javascript: addresses stop "loading" without a navigation.
// 3. When a frame navigates, the frames in its old page disappear without an event.
// 4. A navigation that is refused, or fails before it is committed, leaves the old page and its load
//    untouched.
// 5. The title is asked for when a frame stops, and the answer arrives later: a new navigation may start
//    first.
// 6. A page may navigate for ever. A frame's navigations beyond the 20th are refused, and of all frames
//    together those beyond 1000 more than there are frames. Some the engine carries out all the same, since
//    they need no request: the owner does not learn of them, and the page's scripts and loads are stopped.

#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Engine/Loading/PageClient.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qrv::engine {

class FrameTracker {
public:
    /// Asks for a frame's title; `answer` is called once, soon, with nil if there is none.
    using TitleQuery = std::function<void(const FrameID& frame, std::function<void(NSString)> answer)>;
    /// Called when the main frame's page has loaded; `done` finishes the load when everything that belongs to
    /// it is there.
    using Completion = std::function<void(std::function<void()> done)>;
    /// Maps an address of the engine's to the archive's.
    using AddressMapping = std::function<NSURL(std::string_view engineURL)>;
    /// Stops the scripts of the page, and what it loads: it does not come to rest by itself.
    using PageHalt = std::function<void()>;

    struct Hooks {
        TitleQuery queryTitle;
        Completion completeMainFrame;
        AddressMapping storedURL;
        PageHalt haltPage;
    };

    FrameTracker(PageClient& client, Hooks hooks);

    /// Listens to a page's events. `mainFrameID` is the engine's identifier of its main frame.
    void attach(DevToolsClient& devTools, const std::string& session, std::string mainFrameID);

    /// Says that the next navigation of the main frame is the owner's own load, which is neither asked about
    /// nor reported as started.
    void expectOwnLoad() { ownLoadExpected_ = true; }

    /// Whether the main frame is loading.
    bool isMainFrameLoading() const;
    /// Whether the frame's pending navigation was refused.
    bool isRefused(const std::string& engineFrame) const;
    /// The frame's parent, by the engine's identifiers; nothing for the main frame and unknown frames.
    std::optional<std::string> parentOf(const std::string& engineFrame) const;
    /// The blank frames, in the order of their creation.
    std::vector<std::string> blankFrames() const;

    /// Fails every load that is under way, because the engine has ended.
    void failAll(const NSError& error);

private:
    struct Pending {
        std::string loader;
        NSURL url;
        bool refused = false;
        bool oneTooMany = false; // and refused for that
        NSError failure;         // nil if the reason is not known
    };

    struct Frame {
        std::string parent;
        std::size_t order = 0;
        std::optional<bool> allowNext; // the answer to the latest requested navigation
        bool loading = false;          // committed, but not yet stopped
        bool finishing = false;        // stopped, but waiting for the title
        unsigned generation = 0;       // counts finishes, so that a late answer is recognised
        std::size_t navigations = 0;   // that have started, bar the owner's load
        std::string url;
        std::optional<Pending> pending;
    };

    void frameAttached(const Json& event);
    void frameDetached(const Json& event);
    void navigationRequested(const Json& event);
    void startedNavigating(const Json& event);
    void navigated(const Json& event);
    void stoppedLoading(const Json& event);
    void loadingFailed(const Json& event);
    void windowOpened(const Json& event);

    bool isOneTooMany(Frame& frame);
    void endedUnannounced(const std::string& engineFrame);
    bool allows(const std::string& engineFrame, NavigationType type, const NSURL& url);
    void errorPageShown(const std::string& engineFrame);
    std::vector<std::string> dropDescendants(const std::string& engineFrame);
    void finish(const std::string& engineFrame);
    void finished(const std::string& engineFrame, unsigned generation);
    void failPending(const std::string& engineFrame);
    FrameID named(const std::string& engineFrame) const;
    Frame* find(const std::string& engineFrame);

    PageClient& client_;
    Hooks hooks_;
    std::string mainFrameID_;
    std::map<std::string, Frame> frames_;
    std::size_t frameCount_ = 0;
    std::size_t navigations_ = 0; // of all frames
    bool ownLoadExpected_ = false;
    std::vector<DevToolsClient::Subscription> subscriptions_;
};

} // namespace qrv::engine
