#pragma once

// Follows the frames of a page through the engine's events and tells the page's owner what happens to their
// loads.
//
// One navigation of a frame, in events: requested, started navigating, [request paused], navigated, stopped
// loading; a parent stops after its children. What makes this more than a table:
//   1. A frame that is blank from the start is navigated without ever having started.
//   2. Changes of the fragment, pushState and javascript: addresses stop "loading" without a navigation.
//   3. When a frame navigates, the frames in its old page vanish without a word.
//   4. A navigation that is refused, or fails before it is navigated, leaves the old page and its load alone.
//   5. A title is asked for when a frame stops, and the answer takes a turn: a new navigation may start
//   first.

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
    /// Asks for a frame's title; `answer` is called once, soon, with nil when there is none to be had.
    using TitleQuery = std::function<void(const FrameID& frame, std::function<void(NSString)> answer)>;
    /// Asked when the main frame's page has loaded; `done` ends the load when all that belongs to it is
    /// there.
    using Completion = std::function<void(std::function<void()> done)>;
    /// The address that the archive knows for an address of the engine's.
    using AddressMapping = std::function<NSURL(std::string_view engineURL)>;

    struct Hooks {
        TitleQuery queryTitle;
        Completion completeMainFrame;
        AddressMapping storedURL;
    };

    FrameTracker(PageClient& client, Hooks hooks);

    /// Listens to a page's events. `mainFrameID` is the engine's name of its main frame.
    void attach(DevToolsClient& devTools, const std::string& session, std::string mainFrameID);

    /// The next navigation of the main frame is the owner's own load: neither asked about nor announced.
    void expectOwnLoad() { ownLoadExpected_ = true; }

    /// True while the main frame loads.
    bool isMainFrameLoading() const;
    /// True when the navigation that the frame is about to make was refused.
    bool isRefused(const std::string& engineFrame) const;
    /// The frame's parent, in the engine's names; nothing for the main frame and unknown ones.
    std::optional<std::string> parentOf(const std::string& engineFrame) const;
    /// Frames that are blank, in the order in which they came.
    std::vector<std::string> blankFrames() const;

    /// Fails every load that is under way: the engine is gone.
    void failAll(const NSError& error);

private:
    struct Pending {
        std::string loader;
        NSURL url;
        bool refused = false;
        NSError failure; // nil unless it is known why it failed
    };

    struct Frame {
        std::string parent;
        std::size_t order = 0;
        std::optional<bool> allowNext; // the answer about the navigation that was requested last
        bool loading = false;          // committed, and not yet stopped
        bool finishing = false;        // stopped, and waiting for the title
        unsigned generation = 0;       // counts finishes, so that a late answer finds its own only
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
    bool ownLoadExpected_ = false;
    std::vector<DevToolsClient::Subscription> subscriptions_;
};

} // namespace qrv::engine
