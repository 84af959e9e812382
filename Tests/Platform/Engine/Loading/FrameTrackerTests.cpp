#include "Platform/Engine/Loading/FrameTracker.h"

#include "Platform/Engine/Loading/NetErrors.h"
#include "Tests/Platform/Engine/RecordingClient.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FrameTrackerTest : public ::testing::Test {
protected:
    FrameTrackerTest() { tracker_.attach(client_, "page", "M"); }

    void emit(const char* method, std::initializer_list<Json::Member> params) {
        transport_.emit("page", method, Json::object(params));
    }

    void attach(const char* frame, const char* parent = "M") {
        emit("Page.frameAttached", {{"frameId", frame}, {"parentFrameId", parent}});
    }

    void detach(const char* frame, const char* reason = "remove") {
        emit("Page.frameDetached", {{"frameId", frame}, {"reason", reason}});
    }

    void request(const char* frame, const char* url, const char* reason = "scriptInitiated",
                 const char* disposition = "currentTab") {
        emit("Page.frameRequestedNavigation",
             {{"frameId", frame}, {"url", url}, {"reason", reason}, {"disposition", disposition}});
    }

    void start(const char* frame, const char* url, const char* type = "differentDocument",
               const char* loader = "L") {
        emit("Page.frameStartedNavigating",
             {{"frameId", frame}, {"url", url}, {"navigationType", type}, {"loaderId", loader}});
    }

    void commit(const char* frame, const char* url) {
        emit("Page.frameNavigated",
             {{"frame", Json::object({{"id", frame}, {"url", url}, {"mimeType", "text/html"}})}});
    }

    void commitErrorPage(const char* frame, const char* url) {
        emit("Page.frameNavigated",
             {{"frame",
               Json::object({{"id", frame}, {"url", "chrome-error://x/"}, {"unreachableUrl", url}})}});
    }

    void stop(const char* frame) { emit("Page.frameStoppedLoading", {{"frameId", frame}}); }

    void failRequest(const char* loader, const char* errorText, const char* type = "Document") {
        emit("Network.loadingFailed", {{"requestId", loader}, {"type", type}, {"errorText", errorText}});
    }

    /// A whole load of a frame that is there.
    void load(const char* frame, const char* url) {
        start(frame, url);
        commit(frame, url);
        stop(frame);
    }

    /// The owner's load, of which nothing is kept in the record.
    void loadMainFrame() {
        tracker_.expectOwnLoad();
        load("M", "http://a/");
        owner_.take();
    }

    NSRunLoop loop_;
    ScriptedTransport transport_;
    DevToolsClient client_{transport_, loop_};
    RecordingClient owner_;
    bool holdsTitles_ = false;
    bool holdsCompletion_ = false;
    int halts_ = 0;
    NSString title_;
    std::vector<std::function<void(NSString)>> titleAnswers_;
    std::vector<std::function<void()>> completions_;
    FrameTracker tracker_{
        owner_,
        {.queryTitle =
             [this](const FrameID& /*frame*/, std::function<void(NSString)> answer) {
                 if (holdsTitles_)
                     titleAnswers_.push_back(std::move(answer));
                 else
                     answer(title_);
             },
         .completeMainFrame =
             [this](std::function<void()> done) {
                 if (holdsCompletion_)
                     completions_.push_back(std::move(done));
                 else
                     done();
             },
         .storedURL = [](std::string_view url) { return NSURL::URLWithString(NSString::fromUTF8(url)); },
         .haltPage = [this] { ++halts_; }}};
};

// Pages that navigate for ever

TEST_F(FrameTrackerTest, AFrameMayNavigateTwentyTimes) {
    loadMainFrame();
    attach("F");
    for (int i = 0; i < 20; ++i) load("F", "http://a/f");
    attach("G");
    start("F", "http://a/f");
    EXPECT_TRUE(tracker_.isRefused("F"));
    start("G", "http://a/g");
    EXPECT_FALSE(tracker_.isRefused("G"));
    owner_.take();
    stop("F");
    EXPECT_THAT(owner_.take(), IsEmpty());
}

TEST_F(FrameTrackerTest, TheMainFrameMayNavigateTwentyTimesAfterTheOwnersLoad) {
    loadMainFrame();
    for (int i = 0; i < 20; ++i) load("M", "http://a/");
    EXPECT_FALSE(tracker_.isRefused("M"));
    request("M", "http://a/");
    start("M", "http://a/");
    EXPECT_TRUE(tracker_.isRefused("M"));
}

TEST_F(FrameTrackerTest, FramesThatComeAndGoMayNavigateAThousandTimes) {
    loadMainFrame();
    for (int i = 0; i < 1001; ++i) {
        attach("F");
        start("F", "http://a/f");
        ASSERT_FALSE(tracker_.isRefused("F")) << i;
        detach("F");
    }
    attach("F");
    start("F", "http://a/f");
    EXPECT_FALSE(tracker_.isRefused("F"));
    start("F", "http://a/f");
    EXPECT_TRUE(tracker_.isRefused("F"));
}

TEST_F(FrameTrackerTest, ANavigationTooManyThatHappensAllTheSameIsNotToldAndEndsTheScripts) {
    loadMainFrame();
    attach("F");
    for (int i = 0; i < 20; ++i) load("F", "data:,f");
    attach("G", "F");
    EXPECT_EQ(halts_, 0);
    owner_.take();
    load("F", "data:,f");
    EXPECT_EQ(halts_, 1);
    EXPECT_THAT(owner_.take(), ElementsAre("detached G"));
}

TEST_F(FrameTrackerTest, TheLoadThatANavigationTooManyEndsIsFinished) {
    loadMainFrame();
    attach("F");
    for (int i = 0; i < 20; ++i) {
        start("F", "data:,f");
        commit("F", "data:,f");
    }
    owner_.take();
    load("F", "data:,f");
    EXPECT_THAT(owner_.take(), ElementsAre("finished F"));
}

// The plain course

TEST_F(FrameTrackerTest, TheOwnersLoadIsNeitherAskedAboutNorAnnounced) {
    tracker_.expectOwnLoad();
    request("M", "http://a/");
    start("M", "http://a/");
    commit("M", "http://a/");
    stop("M");
    EXPECT_THAT(owner_.calls, ElementsAre("committed main http://a/ text/html", "finished main"));
}

TEST_F(FrameTrackerTest, OnlyTheFirstLoadIsTheOwners) {
    loadMainFrame();
    load("M", "http://b/");
    EXPECT_THAT(owner_.calls, ElementsAre("asked main other http://b/", "started main http://b/",
                                          "committed main http://b/ text/html", "finished main"));
}

TEST_F(FrameTrackerTest, ASubframesLoadIsAskedAboutOnce) {
    loadMainFrame();
    attach("F");
    request("F", "http://f/");
    start("F", "http://f/");
    commit("F", "http://f/");
    stop("F");
    EXPECT_THAT(owner_.calls,
                ElementsAre("attached F to main", "asked F other http://f/", "started F http://f/",
                            "committed F http://f/ text/html", "finished F"));
}

TEST_F(FrameTrackerTest, KnowsParents) {
    attach("F");
    attach("G", "F");
    EXPECT_EQ(tracker_.parentOf("G"), "F");
    EXPECT_EQ(tracker_.parentOf("F"), "M");
    EXPECT_EQ(tracker_.parentOf("M"), std::nullopt);
    EXPECT_EQ(tracker_.parentOf("X"), std::nullopt);
    EXPECT_THAT(owner_.calls, ElementsAre("attached F to main", "attached G to F"));
}

TEST_F(FrameTrackerTest, EventsOfUnknownFramesMeanNothing) {
    attach("F", "X");
    attach("M");
    detach("X");
    detach("M");
    request("X", "http://x/");
    load("X", "http://x/");
    commitErrorPage("X", "http://x/");
    emit("Page.frameNavigated", {});
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, AFrameWithoutANameIsNotTakenForTheMainFrame) {
    attach("");
    load("", "http://x/");
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, AFrameIsAttachedOnce) {
    attach("F");
    attach("F");
    EXPECT_THAT(owner_.calls, ElementsAre("attached F to main"));
}

// Titles

TEST_F(FrameTrackerTest, TheTitleComesBeforeTheFinish) {
    tracker_.expectOwnLoad();
    title_ = u"A page";
    load("M", "http://a/");
    EXPECT_THAT(owner_.calls,
                ElementsAre("committed main http://a/ text/html", "title main A page", "finished main"));
}

TEST_F(FrameTrackerTest, TheFinishWaitsForTheTitle) {
    tracker_.expectOwnLoad();
    holdsTitles_ = true;
    load("M", "http://a/");
    EXPECT_THAT(owner_.take(), ElementsAre("committed main http://a/ text/html"));
    titleAnswers_.at(0)(u"Late");
    EXPECT_THAT(owner_.calls, ElementsAre("title main Late", "finished main"));
}

TEST_F(FrameTrackerTest, TheMainFrameIsCompletedBeforeItsTitleIsAsked) {
    tracker_.expectOwnLoad();
    holdsCompletion_ = holdsTitles_ = true;
    load("M", "http://a/");
    EXPECT_EQ(titleAnswers_.size(), 0u);
    completions_.at(0)();
    EXPECT_EQ(titleAnswers_.size(), 1u);
    attach("F");
    load("F", "http://f/");
    EXPECT_EQ(completions_.size(), 1u); // only the main frame is
}

TEST_F(FrameTrackerTest, ANewNavigationEndsTheWaitForATitle) {
    tracker_.expectOwnLoad();
    holdsTitles_ = true;
    load("M", "http://a/");
    owner_.take();
    start("M", "http://b/");
    EXPECT_THAT(owner_.take(),
                ElementsAre("finished main", "asked main other http://b/", "started main http://b/"));
    titleAnswers_.at(0)(u"Old");
    EXPECT_THAT(owner_.calls, IsEmpty());
    commit("M", "http://b/");
    stop("M");
    titleAnswers_.at(0)(u"Old");
    owner_.take();
    titleAnswers_.at(1)(u"New");
    EXPECT_THAT(owner_.calls, ElementsAre("title main New", "finished main"));
}

TEST_F(FrameTrackerTest, ATitleForAFrameThatLeftIsDropped) {
    loadMainFrame();
    attach("F");
    holdsTitles_ = true;
    load("F", "http://f/");
    detach("F");
    owner_.take();
    titleAnswers_.at(0)(u"Old");
    EXPECT_THAT(owner_.calls, IsEmpty());
}

// Race 1: blank frames are navigated without having started

TEST_F(FrameTrackerTest, ABlankFrameStartsWhenItIsNavigated) {
    loadMainFrame();
    attach("F");
    commit("F", "about:blank");
    stop("F");
    EXPECT_THAT(owner_.calls, ElementsAre("attached F to main", "started F about:blank",
                                          "committed F about:blank text/html", "finished F"));
}

TEST_F(FrameTrackerTest, ListsBlankFramesInTheirOrder) {
    loadMainFrame();
    for (const char* frame : {"Z", "B", "A"}) attach(frame);
    commit("Z", "about:blank");
    load("B", "http://b/");
    commit("A", "about:blank");
    EXPECT_THAT(tracker_.blankFrames(), ElementsAre("Z", "A"));
    detach("Z");
    load("A", "http://a/");
    EXPECT_THAT(tracker_.blankFrames(), IsEmpty());
}

TEST_F(FrameTrackerTest, ABlankMainFrameIsNotListed) {
    tracker_.expectOwnLoad();
    load("M", "about:blank");
    EXPECT_THAT(tracker_.blankFrames(), IsEmpty());
}

// Race 2: the same document

TEST_F(FrameTrackerTest, AFragmentIsNoLoad) {
    loadMainFrame();
    for (const char* type : {"sameDocument", "historySameDocument"}) {
        start("M", "http://a/#x", type);
        stop("M");
    }
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, StoppingWithoutANavigationIsNoFinish) {
    loadMainFrame();
    attach("F");
    owner_.take();
    stop("F"); // a javascript: address
    stop("M");
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, AFragmentDuringALoadLeavesItAlone) {
    tracker_.expectOwnLoad();
    start("M", "http://a/");
    commit("M", "http://a/");
    start("M", "http://a/#x", "sameDocument");
    stop("M");
    EXPECT_THAT(owner_.calls, ElementsAre("committed main http://a/ text/html", "finished main"));
}

// Race 3: frames vanish with the page that they were in

TEST_F(FrameTrackerTest, DescendantsAreForgottenWhenTheirPageGoes) {
    loadMainFrame();
    attach("F");
    attach("G", "F");
    start("G", "http://g/");
    load("M", "http://b/");
    owner_.take();
    EXPECT_EQ(tracker_.parentOf("F"), std::nullopt);
    EXPECT_EQ(tracker_.parentOf("G"), std::nullopt);
    commit("G", "http://g/");
    stop("G");
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, OtherFramesStayWhenOneNavigates) {
    loadMainFrame();
    attach("F");
    attach("G");
    attach("H", "F");
    load("F", "http://f/");
    EXPECT_EQ(tracker_.parentOf("G"), "M");
    EXPECT_EQ(tracker_.parentOf("H"), std::nullopt);
}

TEST_F(FrameTrackerTest, ThePageThatAnErrorPageReplacesTakesItsFramesAlong) {
    loadMainFrame();
    attach("F");
    load("F", "http://f/");
    attach("G", "F");
    start("G", "http://g/");
    start("F", "http://missing/");
    owner_.take();
    failRequest("L", "net::ERR_FAILED");
    commitErrorPage("F", "http://missing/");
    stop("F");
    EXPECT_THAT(owner_.calls, ElementsAre("failed F -1008", "detached G"));
    EXPECT_EQ(tracker_.parentOf("G"), std::nullopt);
    EXPECT_EQ(tracker_.parentOf("F"), "M");
}

TEST_F(FrameTrackerTest, AFrameThatIsRemovedTakesItsDescendantsAlong) {
    loadMainFrame();
    attach("F");
    attach("G", "F");
    start("G", "http://g/");
    owner_.take();
    detach("F");
    EXPECT_THAT(owner_.take(), ElementsAre("detached F"));
    stop("G");
    commit("F", "http://f/");
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, AFrameThatMovesToAnotherProcessStays) {
    loadMainFrame();
    attach("F");
    start("F", "http://f/");
    owner_.take();
    detach("F", "swap");
    commit("F", "http://f/");
    EXPECT_THAT(owner_.calls, ElementsAre("committed F http://f/ text/html"));
}

// Race 4: navigations that come to nothing

struct TypeCase {
    const char* reason; // null when no frame asked
    const char* navigationType;
    NavigationType type;
};

void PrintTo(const TypeCase& test, std::ostream* out) {
    *out << (test.reason ? test.reason : "nothing") << " " << test.navigationType;
}

class NavigationTypeTest : public FrameTrackerTest, public ::testing::WithParamInterface<TypeCase> {};

TEST_P(NavigationTypeTest, IsAskedAboutAndAllowed) {
    loadMainFrame();
    if (GetParam().reason) request("M", "http://b/", GetParam().reason);
    start("M", "http://b/", GetParam().navigationType);
    EXPECT_FALSE(tracker_.isRefused("M"));
    const std::string type = nameOf(GetParam().type);
    EXPECT_THAT(owner_.calls, ElementsAre("asked main " + type + " http://b/", "started main http://b/"));
}

TEST_P(NavigationTypeTest, IsRefusedAndLeavesThePageAlone) {
    loadMainFrame();
    owner_.allows = false;
    if (GetParam().reason) request("M", "http://b/", GetParam().reason);
    start("M", "http://b/", GetParam().navigationType);
    EXPECT_TRUE(tracker_.isRefused("M"));
    failRequest("L", "net::ERR_ABORTED");
    stop("M");
    EXPECT_FALSE(tracker_.isRefused("M"));
    const std::string type = nameOf(GetParam().type);
    EXPECT_THAT(owner_.calls, ElementsAre("asked main " + type + " http://b/"));
}

INSTANTIATE_TEST_SUITE_P(
    FrameTrackerTest, NavigationTypeTest,
    ::testing::Values(TypeCase{"anchorClick", "differentDocument", NavigationType::linkClicked},
                      TypeCase{"formSubmissionGet", "differentDocument", NavigationType::formSubmitted},
                      TypeCase{"formSubmissionPost", "differentDocument", NavigationType::formSubmitted},
                      TypeCase{"reload", "reload", NavigationType::reload},
                      TypeCase{"scriptInitiated", "differentDocument", NavigationType::other},
                      TypeCase{"metaTagRefresh", "differentDocument", NavigationType::other},
                      TypeCase{"httpHeaderRefresh", "differentDocument", NavigationType::other},
                      TypeCase{"initialFrameNavigation", "differentDocument", NavigationType::other},
                      TypeCase{nullptr, "reload", NavigationType::reload},
                      TypeCase{nullptr, "reloadBypassingCache", NavigationType::reload},
                      TypeCase{nullptr, "historyDifferentDocument", NavigationType::backForward},
                      TypeCase{nullptr, "restore", NavigationType::backForward},
                      TypeCase{nullptr, "restoreWithPost", NavigationType::formResubmitted},
                      TypeCase{nullptr, "differentDocument", NavigationType::other}));

TEST_F(FrameTrackerTest, AnAnswerCountsForOneNavigation) {
    loadMainFrame();
    owner_.allows = false;
    request("M", "http://b/", "anchorClick");
    start("M", "http://b/");
    stop("M");
    owner_.allows = true;
    start("M", "http://c/");
    EXPECT_FALSE(tracker_.isRefused("M"));
}

TEST_F(FrameTrackerTest, ARefusedNavigationLeavesTheLoadOfThePageAlone) {
    tracker_.expectOwnLoad();
    start("M", "http://a/");
    commit("M", "http://a/");
    owner_.allows = false;
    start("M", "http://b/", "reload");
    stop("M");
    EXPECT_THAT(owner_.calls, ElementsAre("committed main http://a/ text/html", "asked main reload http://b/",
                                          "finished main"));
}

TEST_F(FrameTrackerTest, ARefusedNavigationThatHappensAllTheSameIsAnnounced) {
    loadMainFrame();
    owner_.allows = false;
    start("M", "http://b/", "reload");
    owner_.take();
    commit("M", "http://b/"); // nothing had to be asked for: data:, blob:
    EXPECT_THAT(owner_.calls, ElementsAre("started main http://b/", "committed main http://b/ text/html"));
}

TEST_F(FrameTrackerTest, AMissingDocumentFailsAndTheOldPageStays) {
    loadMainFrame();
    attach("F");
    load("F", "http://f/");
    owner_.take();
    start("F", "http://missing/");
    failRequest("L", "net::ERR_ABORTED");
    stop("F");
    EXPECT_THAT(owner_.take(),
                ElementsAre("asked F other http://missing/", "started F http://missing/", "failed F -999"));
    EXPECT_EQ(owner_.lastError.domain(), NSString(NSURLErrorDomain));
    stop("F");
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, ADownloadIsALoadThatStopsUncommitted) {
    tracker_.expectOwnLoad();
    start("M", "http://a/file.bin");
    stop("M");
    EXPECT_THAT(owner_.calls, ElementsAre("failed main -999"));
}

TEST_F(FrameTrackerTest, TheReasonOfAFailureIsTold) {
    tracker_.expectOwnLoad();
    start("M", "http://a/");
    failRequest("L", "net::ERR_NAME_NOT_RESOLVED");
    failRequest("L", "net::ERR_ABORTED"); // the first reason counts
    commitErrorPage("M", "http://a/");
    stop("M");
    EXPECT_THAT(owner_.calls, ElementsAre("failed main -1003"));
    EXPECT_EQ(as<NSURL>(owner_.lastError.userInfo().objectForKey(NSString(NSURLErrorFailingURLErrorKey)))
                  .absoluteString(),
              NSString(u"http://a/"));
}

TEST_F(FrameTrackerTest, AFailureWithoutAReasonIsUnknown) {
    tracker_.expectOwnLoad();
    start("M", "http://a/");
    failRequest("L", "");
    stop("M");
    EXPECT_THAT(owner_.calls, ElementsAre("failed main -1"));
}

TEST_F(FrameTrackerTest, FailuresOfOtherRequestsSayNothing) {
    tracker_.expectOwnLoad();
    start("M", "http://a/");
    failRequest("L", "net::ERR_FAILED", "Image");
    failRequest("K", "net::ERR_FAILED");
    stop("M");
    EXPECT_THAT(owner_.calls, ElementsAre("failed main -999"));
}

TEST_F(FrameTrackerTest, SchemesThatCannotBeLoadedAreUnsupported) {
    loadMainFrame();
    for (const char* url : {"mailto:x@y.example", "odd://z/", "nonsense"}) {
        start("M", url);
        failRequest("L", "net::ERR_ABORTED");
        stop("M");
    }
    for (const char* url : {"data:,x", "blob:http://a/1", "file:///x", "HTTPS://b/", "about:srcdoc"}) {
        start("M", url);
        stop("M");
    }
    std::vector<std::string> failures;
    for (const std::string& call : owner_.calls) {
        if (call.starts_with("failed")) failures.push_back(call);
    }
    EXPECT_THAT(failures,
                ElementsAre("failed main -1002", "failed main -1002", "failed main -1002", "failed main -999",
                            "failed main -999", "failed main -999", "failed main -999", "failed main -999"));
}

TEST_F(FrameTrackerTest, ANavigationBeforeTheLastOneCommittedCancelsIt) {
    loadMainFrame();
    start("M", "http://b/", "differentDocument", "L1");
    start("M", "http://c/", "differentDocument", "L2");
    failRequest("L1", "net::ERR_ABORTED");
    commit("M", "http://c/");
    stop("M");
    EXPECT_THAT(owner_.calls,
                ElementsAre("asked main other http://b/", "started main http://b/", "failed main -999",
                            "asked main other http://c/", "started main http://c/",
                            "committed main http://c/ text/html", "finished main"));
}

TEST_F(FrameTrackerTest, TheOwnersLoadThatIsOvertakenFails) {
    tracker_.expectOwnLoad();
    start("M", "http://a/", "differentDocument", "L1");
    start("M", "http://b/", "differentDocument", "L2");
    EXPECT_THAT(owner_.calls,
                ElementsAre("failed main -999", "asked main other http://b/", "started main http://b/"));
}

// Windows

TEST_F(FrameTrackerTest, NavigationsElsewhereAreRequestsForAWindow) {
    loadMainFrame();
    request("M", "http://b/", "anchorClick", "newTab");
    emit("Page.windowOpen", {{"url", "http://c/"}, {"windowName", "w"}});
    EXPECT_THAT(owner_.calls, ElementsAre("window http://b/ ", "window http://c/ w"));
    start("M", "http://d/");
    EXPECT_FALSE(tracker_.isRefused("M"));
}

TEST_F(FrameTrackerTest, ANavigationWithoutADispositionStaysInItsFrame) {
    loadMainFrame();
    emit("Page.frameRequestedNavigation",
         {{"frameId", "M"}, {"url", "http://b/"}, {"reason", "anchorClick"}});
    EXPECT_THAT(owner_.calls, ElementsAre("asked main linkClicked http://b/"));
}

// The end of the engine

TEST_F(FrameTrackerTest, FailingFailsTheMainFrameLast) {
    tracker_.expectOwnLoad();
    start("M", "http://a/");
    commit("M", "http://a/");
    attach("F");
    start("F", "http://f/");
    owner_.take();
    tracker_.failAll(urlError(NSURLErrorNetworkConnectionLost, {}));
    EXPECT_THAT(owner_.take(), ElementsAre("failed F -1005", "failed main -1005"));
    stop("F");
    stop("M");
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(FrameTrackerTest, FailingEndsTheWaitForATitle) {
    tracker_.expectOwnLoad();
    holdsTitles_ = true;
    load("M", "http://a/");
    owner_.take();
    tracker_.failAll(urlError(NSURLErrorNetworkConnectionLost, {}));
    titleAnswers_.at(0)(u"Late");
    EXPECT_THAT(owner_.calls, ElementsAre("failed main -1005"));
}

TEST_F(FrameTrackerTest, AnUnattachedTrackerFailsTheMainFrame) {
    FrameTracker tracker(owner_, {});
    tracker.failAll(urlError(NSURLErrorTimedOut, {}));
    EXPECT_THAT(owner_.calls, ElementsAre("failed main -1001"));
}

// An owner that runs the loop inside a call lets events arrive there.

TEST_F(FrameTrackerTest, AFrameMayLeaveWhileTheOwnerIsAsked) {
    loadMainFrame();
    attach("F");
    owner_.onCall = [this](const std::string& call) {
        if (call.starts_with("asked")) detach("F");
    };
    request("F", "http://f/");
    attach("F");
    start("F", "http://f/");
    EXPECT_FALSE(tracker_.isRefused("F"));
    EXPECT_EQ(tracker_.parentOf("F"), std::nullopt);
}

TEST_F(FrameTrackerTest, AFrameMayLeaveWhileItsFailureIsTold) {
    loadMainFrame();
    owner_.onCall = [this](const std::string& call) {
        if (call.starts_with("failed F") || call == "finished F") detach("F");
    };
    attach("F");
    start("F", "http://f/");
    stop("F");
    attach("F");
    start("F", "http://f/");
    commitErrorPage("F", "http://f/");
    attach("F");
    start("F", "http://f/");
    start("F", "http://g/");
    attach("F");
    holdsTitles_ = true;
    load("F", "http://f/");
    start("F", "http://g/");
    attach("F");
    load("F", "http://f/");
    commit("F", "http://g/");
    EXPECT_EQ(tracker_.parentOf("F"), std::nullopt);
    EXPECT_EQ(std::count(owner_.calls.begin(), owner_.calls.end(), "detached F"), 5);
    EXPECT_EQ(std::count(owner_.calls.begin(), owner_.calls.end(), "asked F other http://g/"), 0);
}

} // namespace
} // namespace qrv::engine
