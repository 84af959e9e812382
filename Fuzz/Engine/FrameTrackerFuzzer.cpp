// Any sequence of events of frames: the owner hears of frames that it knows only, and of no load's end
// without its start.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/Loading/FrameTracker.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <array>
#include <deque>

using namespace qrv;
using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

constexpr std::array frameNames{"main", "a", "b", "c", "d", "", "unknown"};
constexpr std::array addresses{"http://a/", "http://a/#f", "about:blank", "x:y", "", "data:,"};
constexpr std::array navigationTypes{"differentDocument",        "sameDocument",    "reload",
                                     "historyDifferentDocument", "restoreWithPost", ""};
constexpr std::array dispositions{"currentTab", "newWindow"};
constexpr std::array reasons{"remove", "swap"};

/// Keeps the frames as the web view does.
class Owner final : public PageClient {
public:
    explicit Owner(FuzzInput& input) : input_(input) {}

    /// A load that is not reported as started.
    void expectLoad() { ++frames_[mainFrame].underWay; }

    void frameAttached(const FrameID& frame, const FrameID& parent) override {
        require(frames_.contains(parent) && !frames_.contains(frame));
        frames_[frame].parent = parent;
    }

    void frameDetached(const FrameID& frame) override {
        require(frame != mainFrame);
        known(frame);
        drop(frame);
    }

    void loadStarted(const FrameID& frame, const NSURL&) override { ++known(frame).underWay; }

    void loadCommitted(const FrameID& frame, const NSURL&, const NSString&) override {
        require(known(frame).underWay > 0);
        dropChildren(frame);
    }

    void titleChanged(const FrameID& frame, const NSString&) override { known(frame); }

    void loadFinished(const FrameID& frame) override { require(--known(frame).underWay >= 0); }

    void loadFailed(const FrameID& frame, const NSError& error) override {
        require(!error.isNil());
        require(--known(frame).underWay >= 0);
    }

    bool shouldNavigate(const FrameID& frame, NavigationType, const NSURL&) override {
        known(frame);
        return input_.flag();
    }

    void windowRequested(const NSURL&, const NSString&) override {}

    void authenticationRequired(const FrameID&, const NSURL&) override {}

    // The tracker tells what happens to frames only.
    void pageLost(const NSError&) override { require(false); }

    void progressChanged(double) override {}

private:
    struct Frame {
        FrameID parent;
        int underWay = 0;
    };

    Frame& known(const FrameID& frame) {
        const auto found = frames_.find(frame);
        require(found != frames_.end());
        return found->second;
    }

    void drop(const FrameID& frame) {
        dropChildren(frame);
        frames_.erase(frame);
    }

    void dropChildren(const FrameID& frame) {
        std::vector<FrameID> children;
        for (const auto& [name, other] : frames_) {
            if (name != mainFrame && other.parent == frame) children.push_back(name);
        }
        for (const FrameID& child : children) drop(child);
    }

    FuzzInput& input_;
    std::map<FrameID, Frame> frames_{{mainFrame, {}}};
};

class Page {
public:
    explicit Page(FuzzInput& input) : input_(input), owner_(input) {
        tracker_.attach(devTools_, "page", "main");
        if (input_.flag()) {
            tracker_.expectOwnLoad();
            owner_.expectLoad();
        }
    }

    void run() {
        while (!input_.isEmpty()) step();
        tracker_.isMainFrameLoading();
    }

private:
    template <std::size_t count>
    const char* choice(const std::array<const char*, count>& values) {
        return values[input_.below(count)];
    }

    void step() {
        switch (input_.below(10)) {
        case 0:
            return emit("Page.frameAttached", {{"frameId", frame()}, {"parentFrameId", frame()}});
        case 1:
            return emit("Page.frameDetached", {{"frameId", frame()}, {"reason", choice(reasons)}});
        case 2:
            return emit(
                "Page.frameRequestedNavigation",
                {{"frameId", frame()}, {"url", choice(addresses)}, {"disposition", choice(dispositions)}});
        case 3:
            return emit("Page.frameStartedNavigating", {{"frameId", frame()},
                                                        {"url", choice(addresses)},
                                                        {"loaderId", loader()},
                                                        {"navigationType", choice(navigationTypes)}});
        case 4:
            return emit("Page.frameNavigated",
                        {{"frame", Json::object({{"id", frame()}, {"url", choice(addresses)}})}});
        case 5:
            return emit("Page.frameNavigated",
                        {{"frame", Json::object({{"id", frame()}, {"unreachableUrl", "http://a/"}})}});
        case 6:
            return emit("Page.frameStoppedLoading", {{"frameId", frame()}});
        case 7:
            return emit("Network.loadingFailed",
                        {{"type", "Document"}, {"requestId", loader()}, {"errorText", "net::ERR_FAILED"}});
        case 8:
            return answer(completions_);
        default:
            return answer(titles_);
        }
    }

    const char* frame() { return choice(frameNames); }

    std::string loader() { return std::to_string(input_.below(4)); }

    void emit(const char* method, std::initializer_list<Json::Member> params) {
        transport_.emit("page", method, Json::object(params));
        tracker_.blankFrames();
        for (const char* name : frameNames) require(!tracker_.parentOf(name) || name != std::string("main"));
    }

    void answer(std::deque<std::function<void()>>& waiting) {
        if (waiting.empty()) return;
        const auto first = waiting.front();
        waiting.pop_front();
        first();
    }

    FrameTracker::Hooks hooks() {
        return {
            .queryTitle =
                [this](const FrameID&, const std::function<void(NSString)>& title) {
                    const NSString text = input_.flag() ? NSString(u"title") : NSString();
                    titles_.push_back([title, text] { title(text); });
                },
            .completeMainFrame = [this](const std::function<void()>& done) { completions_.push_back(done); },
            .storedURL = [](std::string_view url) { return NSURL::URLWithString(NSString::fromUTF8(url)); },
            .haltPage = [] {}};
    }

    FuzzInput& input_;
    Owner owner_;
    ScriptedTransport transport_;
    NSRunLoop loop_;
    DevToolsClient devTools_{transport_, loop_};
    std::deque<std::function<void()>> titles_;
    std::deque<std::function<void()>> completions_;
    FrameTracker tracker_{owner_, hooks()};
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    Page(input).run();
    return 0;
}
