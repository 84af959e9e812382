#include "Platform/Engine/Loading/FrameTracker.h"

#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Engine/Loading/NetErrors.h"

#include <algorithm>
#include <array>

namespace qrv::engine {

namespace {

// As often as browsers let a request be redirected.
constexpr std::size_t mostNavigations = 20;

// What all frames may do together, beyond a navigation of each of them.
constexpr std::size_t mostFurtherNavigations = 1000;

/// Why a frame asked to navigate (`Page.ClientNavigationReason`).
NavigationType typeOfReason(std::string_view reason) {
    if (reason == "anchorClick") return NavigationType::linkClicked;
    if (reason == "formSubmissionGet" || reason == "formSubmissionPost") return NavigationType::formSubmitted;
    if (reason == "reload") return NavigationType::reload;
    return NavigationType::other;
}

/// How a navigation started that no frame requested (`navigationType` of frameStartedNavigating).
NavigationType typeOfNavigation(std::string_view type) {
    if (type == "restoreWithPost") return NavigationType::formResubmitted;
    if (type.starts_with("reload")) return NavigationType::reload;
    if (type.starts_with("history") || type.starts_with("restore")) return NavigationType::backForward;
    return NavigationType::other;
}

bool isSameDocument(std::string_view navigationType) {
    return navigationType == "sameDocument" || navigationType == "historySameDocument";
}

bool isLoadable(std::string_view url) {
    constexpr std::array<std::string_view, 6> schemes{"http", "https", "file", "data", "blob", "about"};
    return std::find(schemes.begin(), schemes.end(), schemeOf(url)) != schemes.end();
}

} // namespace

FrameTracker::FrameTracker(PageClient& client, Hooks hooks) : client_(client), hooks_(std::move(hooks)) {}

void FrameTracker::attach(DevToolsClient& devTools, const std::string& session, std::string mainFrameID) {
    mainFrameID_ = std::move(mainFrameID);
    frames_[mainFrameID_] = {};
    const auto listen = [&](const char* method, void (FrameTracker::*handler)(const Json&)) {
        subscriptions_.push_back(devTools.listen(
            session, method, [this, handler](const Json& event) { (this->*handler)(event); }));
    };
    listen("Page.frameAttached", &FrameTracker::frameAttached);
    listen("Page.frameDetached", &FrameTracker::frameDetached);
    listen("Page.frameRequestedNavigation", &FrameTracker::navigationRequested);
    listen("Page.frameStartedNavigating", &FrameTracker::startedNavigating);
    listen("Page.frameNavigated", &FrameTracker::navigated);
    listen("Page.frameStoppedLoading", &FrameTracker::stoppedLoading);
    listen("Network.loadingFailed", &FrameTracker::loadingFailed);
    listen("Page.windowOpen", &FrameTracker::windowOpened);
}

bool FrameTracker::isRefused(const std::string& engineFrame) const {
    const auto found = frames_.find(engineFrame);
    return found != frames_.end() && found->second.pending && found->second.pending->refused;
}

bool FrameTracker::isMainFrameLoading() const {
    const auto found = frames_.find(mainFrameID_);
    if (found == frames_.end()) return false;
    const Frame& frame = found->second;
    return ownLoadExpected_ || frame.pending || frame.loading || frame.finishing;
}

std::optional<std::string> FrameTracker::parentOf(const std::string& engineFrame) const {
    const auto found = frames_.find(engineFrame);
    if (found == frames_.end() || engineFrame == mainFrameID_) return std::nullopt;
    return found->second.parent;
}

std::vector<std::string> FrameTracker::blankFrames() const {
    std::vector<std::pair<std::size_t, std::string>> blank;
    for (const auto& [identifier, frame] : frames_) {
        if (identifier != mainFrameID_ && frame.url == "about:blank")
            blank.emplace_back(frame.order, identifier);
    }
    std::sort(blank.begin(), blank.end());
    std::vector<std::string> identifiers;
    identifiers.reserve(blank.size());
    for (auto& entry : blank) identifiers.push_back(std::move(entry.second));
    return identifiers;
}

void FrameTracker::failAll(const NSError& error) {
    std::vector<std::string> identifiers;
    for (auto& [identifier, frame] : frames_) {
        frame.pending.reset();
        frame.loading = frame.finishing = false;
        identifiers.push_back(identifier);
    }
    for (const std::string& identifier : identifiers) {
        if (identifier != mainFrameID_) client_.loadFailed(identifier, error);
    }
    client_.loadFailed(mainFrame, error);
}

FrameID FrameTracker::named(const std::string& engineFrame) const {
    return engineFrame == mainFrameID_ ? FrameID(mainFrame) : engineFrame;
}

FrameTracker::Frame* FrameTracker::find(const std::string& engineFrame) {
    const auto found = frames_.find(engineFrame);
    return found == frames_.end() ? nullptr : &found->second;
}

void FrameTracker::frameAttached(const Json& event) {
    const std::string identifier = event["frameId"].string();
    const std::string parent = event["parentFrameId"].string();
    if (identifier.empty() || !find(parent) || find(identifier)) return; // an empty name is the main frame's
    Frame frame;
    frame.parent = parent;
    frame.order = ++frameCount_;
    frames_.emplace(identifier, std::move(frame));
    client_.frameAttached(identifier, named(parent));
}

void FrameTracker::frameDetached(const Json& event) {
    const std::string identifier = event["frameId"].string();
    // A frame that moves to another process is detached here and continues there.
    if (event["reason"].string() == "swap" || identifier == mainFrameID_ || !find(identifier)) return;
    dropDescendants(identifier);
    frames_.erase(identifier);
    client_.frameDetached(identifier);
}

/// Returns the frame's own children. The owner drops its own ones when the navigation is reported.
std::vector<std::string> FrameTracker::dropDescendants(const std::string& engineFrame) {
    std::vector<std::string> children;
    for (const auto& [identifier, frame] : frames_) {
        if (frame.parent == engineFrame && identifier != mainFrameID_) children.push_back(identifier);
    }
    for (const std::string& child : children) {
        dropDescendants(child);
        frames_.erase(child);
    }
    return children;
}

bool FrameTracker::allows(const std::string& engineFrame, NavigationType type, const NSURL& url) {
    return client_.shouldNavigate(named(engineFrame), type, url);
}

void FrameTracker::navigationRequested(const Json& event) {
    const std::string identifier = event["frameId"].string();
    const NSURL url = hooks_.storedURL(event["url"].string());
    if (event["disposition"].string("currentTab") != "currentTab") {
        client_.windowRequested(url, {});
        return;
    }
    if (!find(identifier)) return;
    const bool own = ownLoadExpected_ && identifier == mainFrameID_;
    const bool allowed = own || allows(identifier, typeOfReason(event["reason"].string()), url);
    if (Frame* frame = find(identifier)) frame->allowNext = allowed;
}

void FrameTracker::startedNavigating(const Json& event) {
    const std::string identifier = event["frameId"].string();
    const std::string navigationType = event["navigationType"].string();
    if (isSameDocument(navigationType)) return;
    if (const Frame* last = find(identifier)) finished(identifier, last->generation);
    failPending(identifier);
    Frame* frame = find(identifier);
    if (!frame) return;

    const bool own = ownLoadExpected_ && identifier == mainFrameID_;
    const NSURL url = hooks_.storedURL(event["url"].string());
    const std::optional<bool> answer = std::exchange(frame->allowNext, std::nullopt);
    const bool oneTooMany = !own && isOneTooMany(*frame);
    const bool allowed =
        own ||
        (!oneTooMany && (answer ? *answer : allows(identifier, typeOfNavigation(navigationType), url)));
    frame = find(identifier);
    if (!frame) return;
    Pending pending{.loader = event["loaderId"].string(),
                    .url = url,
                    .refused = !allowed,
                    .oneTooMany = oneTooMany,
                    .failure = {}};
    if (!isLoadable(event["url"].string())) pending.failure = urlError(NSURLErrorUnsupportedURL, url);
    frame->pending = std::move(pending);
    if (own) {
        ownLoadExpected_ = false;
    } else if (allowed) {
        client_.loadStarted(named(identifier), url);
    }
}

bool FrameTracker::isOneTooMany(Frame& frame) {
    return ++frame.navigations > mostNavigations || ++navigations_ > frames_.size() + mostFurtherNavigations;
}

void FrameTracker::navigated(const Json& event) {
    const Json page = event["frame"];
    const std::string identifier = page["id"].string();
    Frame* frame = find(identifier);
    if (!frame) return;
    if (page.contains("unreachableUrl")) {
        errorPageShown(identifier);
        return;
    }
    if (frame->pending && frame->pending->oneTooMany) {
        endedUnannounced(identifier);
        return;
    }
    const bool announced = frame->pending && !frame->pending->refused;
    const bool wasFinishing = std::exchange(frame->finishing, false);
    frame->pending.reset();
    frame->loading = true;
    frame->url = page["url"].string();
    dropDescendants(identifier);

    const FrameID name = named(identifier);
    const NSURL url = hooks_.storedURL(page["url"].string());
    if (wasFinishing) client_.loadFinished(name);
    if (!announced) client_.loadStarted(name, url);
    client_.loadCommitted(name, url, NSString::fromUTF8(page["mimeType"].string()));
}

/// The engine's own error page has replaced the old page. The owner does not learn of the error page, but
/// must learn that the old page's frames are gone.
void FrameTracker::errorPageShown(const std::string& engineFrame) {
    frames_.at(engineFrame).loading = false;
    const std::vector<std::string> children = dropDescendants(engineFrame);
    failPending(engineFrame);
    for (const std::string& child : children) client_.frameDetached(child);
}

/// A page that was one too many has replaced the old one, whose load has thereby ended.
void FrameTracker::endedUnannounced(const std::string& engineFrame) {
    Frame& frame = frames_.at(engineFrame);
    frame.pending.reset();
    const bool wasLoading = std::exchange(frame.loading, false);
    const bool wasFinishing = std::exchange(frame.finishing, false);
    const std::vector<std::string> children = dropDescendants(engineFrame);
    hooks_.haltPage();
    for (const std::string& child : children) client_.frameDetached(child);
    if (wasLoading || wasFinishing) client_.loadFinished(named(engineFrame));
}

void FrameTracker::stoppedLoading(const Json& event) {
    const std::string identifier = event["frameId"].string();
    failPending(identifier);
    Frame* frame = find(identifier);
    if (!frame || !frame->loading) return;
    frame->loading = false;
    finish(identifier);
}

void FrameTracker::failPending(const std::string& engineFrame) {
    Frame* frame = find(engineFrame);
    if (!frame || !frame->pending) return;
    const Pending pending = std::move(*frame->pending);
    frame->pending.reset();
    if (pending.refused) return;
    client_.loadFailed(named(engineFrame),
                       pending.failure ? pending.failure : urlError(NSURLErrorCancelled, pending.url));
}

void FrameTracker::finish(const std::string& engineFrame) {
    Frame& frame = frames_.at(engineFrame);
    frame.finishing = true;
    const unsigned generation = ++frame.generation;
    const auto askForTitle = [this, engineFrame, generation] {
        hooks_.queryTitle(engineFrame, [this, engineFrame, generation](const NSString& title) {
            const Frame* stopped = find(engineFrame);
            if (!stopped || !stopped->finishing || stopped->generation != generation) return;
            if (title) client_.titleChanged(named(engineFrame), title);
            finished(engineFrame, generation);
        });
    };
    if (engineFrame == mainFrameID_) {
        hooks_.completeMainFrame(askForTitle);
    } else {
        askForTitle();
    }
}

void FrameTracker::finished(const std::string& engineFrame, unsigned generation) {
    Frame* frame = find(engineFrame);
    if (!frame || !frame->finishing || frame->generation != generation) return;
    frame->finishing = false;
    client_.loadFinished(named(engineFrame));
}

void FrameTracker::loadingFailed(const Json& event) {
    if (event["type"].string() != "Document") return;
    const std::string loader = event["requestId"].string();
    for (auto& [identifier, frame] : frames_) {
        if (!frame.pending || frame.pending->loader != loader || frame.pending->failure) continue;
        frame.pending->failure = urlError(event["errorText"].string(), frame.pending->url);
    }
}

void FrameTracker::windowOpened(const Json& event) {
    client_.windowRequested(hooks_.storedURL(event["url"].string()),
                            NSString::fromUTF8(event["windowName"].string()));
}

} // namespace qrv::engine
