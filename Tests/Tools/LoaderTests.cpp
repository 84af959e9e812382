#include "Source/Tools/loader.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSURLCache.h"
#include "Tests/Support/Variable.h"
#include "Tests/Tools/LoaderTest.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using engine::mainFrame;
using engine::NavigationType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// Creation and end

TEST_F(LoaderTest, IsEmptyAfterInit) {
    EXPECT_THAT(loader._objectsLoading, IsEmpty());
    EXPECT_TRUE(loader._error.isNil());
    EXPECT_TRUE(loader._timeoutDate.isNil());
    EXPECT_TRUE(loader._finishDate.isNil());
    EXPECT_FALSE(loader._justTitle);
    EXPECT_FALSE(loader._receivedTitle);
}

TEST_F(LoaderTest, MakesAViewOf612By612) {
    EXPECT_EQ(loader._view->frame().size.width, 612);
    EXPECT_EQ(loader._view->frame().size.height, 612);
    EXPECT_EQ(loader._view->frame().origin.x, 0);
    EXPECT_EQ(loader._view->frame().origin.y, 0);
}

TEST_F(LoaderTest, EmptiesAndSwitchesOffTheCache) {
    NSURLCache& cache = NSURLCache::sharedURLCache();
    cache.setDiskCapacity(5);
    cache.setMemoryCapacity(6);
    const std::size_t removals = cache.removals();
    const TestLoader another;
    EXPECT_EQ(cache.removals(), removals + 1);
    EXPECT_EQ(cache.diskCapacity(), 0U);
    EXPECT_EQ(cache.memoryCapacity(), 0U);
}

TEST_F(LoaderTest, TheCacheCanBeEmptiedAgain) {
    NSURLCache& cache = NSURLCache::sharedURLCache();
    cache.setDiskCapacity(5);
    cache.setMemoryCapacity(6);
    const std::size_t removals = cache.removals();
    loader.clearURLCache();
    EXPECT_EQ(cache.removals(), removals + 1);
    EXPECT_EQ(cache.diskCapacity(), 0U);
    EXPECT_EQ(cache.memoryCapacity(), 0U);
}

TEST_F(LoaderTest, APlainLoaderHasNoLogArea) {
    const Loader plain;
    EXPECT_THROW(plain.logArea(), NSException);
}

TEST_F(LoaderTest, ObservesItsOwnViewOnlyAndOnlyWhileItLives) {
    NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
    const void* viewOfAnother = nullptr;
    {
        const TestLoader another;
        viewOfAnother = another._view.get();
        log.clear();
        center.postNotificationName_object(WebViewProgressFinishedNotification, viewOfAnother);
        EXPECT_THAT(log.lines(), ElementsAre("[LogTest] Progress finished"));
    }
    log.clear();
    center.postNotificationName_object(WebViewProgressFinishedNotification, viewOfAnother);
    center.postNotificationName_object(u"Other", loader._view.get());
    EXPECT_THAT(log.lines(), IsEmpty());
}

// What is loading

TEST_F(LoaderTest, AFrameThatStartsTwiceAndFinishesOnceLeavesCompletely) {
    startMainFrame();
    startMainFrame();
    EXPECT_THAT(loader._objectsLoading, SizeIs(2));
    finishMainFrame();
    EXPECT_THAT(loader._objectsLoading, IsEmpty());
}

TEST_F(LoaderTest, FramesLeaveOneByOneAndInTheirOwnOrder) {
    startMainFrame();
    attachChild();
    client().loadStarted("child", url(u"https://a.example/child"));
    EXPECT_THAT(loader._objectsLoading, ElementsAre(id(loader._view->mainFrame()), id(child())));
    client().loadCommitted("child", url(u"https://a.example/child"), u"text/html");
    client().loadFinished("child");
    EXPECT_THAT(loader._objectsLoading, ElementsAre(id(loader._view->mainFrame())));
    EXPECT_TRUE(log.contains("[LogTest] didFinishLoadForFrame: " + text(child())));
}

TEST_F(LoaderTest, LogsAStartWithTheFrameAndItsURL) {
    startMainFrame();
    EXPECT_TRUE(log.contains("[LogTest] didStartProvisionalLoadForFrame: " + mainFrameText() +
                             " https://a.example/"));
}

TEST_F(LoaderTest, AboutURLsAreNotWaitedFor) {
    client().loadStarted(mainFrame, url(u"about:blank"));
    EXPECT_THAT(loader._objectsLoading, IsEmpty());
    EXPECT_TRUE(
        log.contains("[LogTest] didStartProvisionalLoadForFrame: " + mainFrameText() + " about:blank"));
}

TEST_F(LoaderTest, TheSchemeAboutIsComparedExactly) {
    for (const char16_t* other : {u"ABOUT:blank", u"about-us:page", u"aboutpage", u"http://about/"}) {
        loader._objectsLoading.clear();
        client().loadStarted(mainFrame, url(other));
        EXPECT_THAT(loader._objectsLoading, SizeIs(1)) << NSString(other).utf8();
    }
}

TEST_F(LoaderTest, AFrameWithoutURLIsWaitedFor) {
    client().loadStarted(mainFrame, {});
    EXPECT_THAT(loader._objectsLoading, SizeIs(1));
    EXPECT_TRUE(log.contains("[LogTest] didStartProvisionalLoadForFrame: " + mainFrameText() + " (null)"));
}

TEST_F(LoaderTest, AFrameWithoutProvisionalDataSourceIsWaitedFor) {
    loader.webView_didStartProvisionalLoadForFrame(*loader._view, loader._view->mainFrame());
    EXPECT_THAT(loader._objectsLoading, SizeIs(1));
}

TEST_F(LoaderTest, NoFrameIsLoggedWithoutAreaAndNotWaitedFor) {
    loader.startLoading();
    loader.webView_didStartProvisionalLoadForFrame(*loader._view, nullptr);
    EXPECT_THAT(loader._objectsLoading, IsEmpty());
    EXPECT_THAT(log.lines(), ElementsAre(" didStartProvisionalLoadForFrame got nil frame",
                                         "[LogTest] didStartProvisionalLoadForFrame: (null) (null)"));
}

TEST_F(LoaderTest, TheMarkerHoldsTheWaitUntilAFrameStarts) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    loader.startLoading();
    loader.startLoading();
    EXPECT_THAT(loader._objectsLoading, ElementsAre(id(NSString(u"rootPage")), id(NSString(u"rootPage"))));
    time.inNextSlice([] {});
    time.inNextSlice([&] { client().loadStarted(mainFrame, url(u"about:blank")); });
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 2);
    EXPECT_EQ(log.count("[LogTest]     rootPage"), 4);
}

// Failures

TEST_F(LoaderTest, AFailingSubframeIsLoggedAndForgotten) {
    startMainFrame();
    attachChild();
    client().loadStarted("child", url(u"https://a.example/child"));
    client().loadFailed("child", urlError(NSURLErrorCannotFindHost));
    EXPECT_TRUE(loader._error.isNil());
    EXPECT_THAT(loader._objectsLoading, ElementsAre(id(loader._view->mainFrame())));
    EXPECT_THAT(
        log.startingWith("[LogTest] didFailProvisionalLoadWithError: <NSError Domain=NSURLErrorDomain "
                         "Code=-1003 "),
        SizeIs(1));
}

TEST_F(LoaderTest, AMainFrameThatFailsBeforeItArrivesStoresItsError) {
    startMainFrame();
    startMainFrame();
    client().loadFailed(mainFrame, urlError(NSURLErrorUnsupportedURL));
    EXPECT_EQ(loader._error, urlError(NSURLErrorUnsupportedURL));
    EXPECT_THAT(loader._objectsLoading, IsEmpty());
}

TEST_F(LoaderTest, AMainFrameThatFailsWhileItArrivesStoresItsError) {
    startMainFrame();
    client().loadCommitted(mainFrame, url(u"https://a.example/"), u"text/html");
    client().loadFailed(mainFrame, urlError(NSURLErrorNetworkConnectionLost));
    EXPECT_EQ(loader._error, urlError(NSURLErrorNetworkConnectionLost));
    EXPECT_THAT(loader._objectsLoading, IsEmpty());
    EXPECT_THAT(
        log.startingWith("[LogTest] didFailLoadWithError: <NSError Domain=NSURLErrorDomain Code=-1005 "),
        SizeIs(1));
}

TEST_F(LoaderTest, ALaterErrorOfTheMainFrameReplacesTheFirst) {
    startMainFrame();
    client().loadFailed(mainFrame, urlError(NSURLErrorUnsupportedURL));
    startMainFrame();
    client().loadFailed(mainFrame, urlError(NSURLErrorCancelled));
    EXPECT_EQ(loader._error, urlError(NSURLErrorCancelled));
}

// The delegate's calls by themselves

TEST_F(LoaderTest, ATitleIsTakenNoteOfWhateverItsFrame) {
    loader.webView_didReceiveTitle_forFrame(*loader._view, u"Title", nullptr);
    EXPECT_TRUE(loader._receivedTitle);
    EXPECT_FALSE(loader.hasPageTitle()) << "the main frame has none yet";
}

TEST_F(LoaderTest, AFrameThatNeverStartedMayFinish) {
    startMainFrame();
    attachChild();
    loader.webView_didFinishLoadForFrame(*loader._view, child());
    EXPECT_THAT(loader._objectsLoading, ElementsAre(id(loader._view->mainFrame())));
    EXPECT_TRUE(log.contains("[LogTest] didFinishLoadForFrame: " + text(child())));
}

TEST_F(LoaderTest, NoFrameFinishesNothingAndIsLogged) {
    startMainFrame();
    loader.webView_didFinishLoadForFrame(*loader._view, nullptr);
    EXPECT_THAT(loader._objectsLoading, SizeIs(1));
    EXPECT_TRUE(log.contains("[LogTest] didFinishLoadForFrame: (null)"));
}

TEST_F(LoaderTest, OnlyTheSendersMainFrameStoresItsErrors) {
    const NSError error = urlError(NSURLErrorCannotFindHost);
    attachChild();
    loader.webView_didFailLoadWithError_forFrame(*loader._view, error, child());
    loader.webView_didFailLoadWithError_forFrame(*loader._view, error, nullptr);
    loader.webView_didFailProvisionalLoadWithError_forFrame(*loader._view, error, child());
    loader.webView_didFailProvisionalLoadWithError_forFrame(*loader._view, error, nullptr);
    EXPECT_TRUE(loader._error.isNil());

    loader.webView_didFailLoadWithError_forFrame(*loader._view, error, loader._view->mainFrame());
    EXPECT_EQ(loader._error, error);
    const NSError later = urlError(NSURLErrorCancelled);
    loader.webView_didFailProvisionalLoadWithError_forFrame(*loader._view, later, loader._view->mainFrame());
    EXPECT_EQ(loader._error, later);
}

TEST_F(LoaderTest, ANilErrorIsLoggedAndClearsTheStoredOne) {
    loader._error = urlError(NSURLErrorCannotFindHost);
    loader.webView_didFailLoadWithError_forFrame(*loader._view, {}, loader._view->mainFrame());
    EXPECT_TRUE(loader._error.isNil());
    EXPECT_TRUE(log.contains("[LogTest] didFailLoadWithError: (null)"));
}

TEST_F(LoaderTest, ATitleCountsOnceItWasReceivedAndFromThenOn) {
    finishMainFrame();
    loader._view->mainFrame()->dataSource()->setPageTitle(u"Title");
    EXPECT_EQ(loader.pageTitle(), NSString(u"Title"));
    EXPECT_FALSE(loader.hasPageTitle());
    loader.webView_didReceiveTitle_forFrame(*loader._view, {}, nullptr);
    EXPECT_TRUE(loader.hasPageTitle());
    loader.webView_didReceiveTitle_forFrame(*loader._view, u"Another", nullptr);
    EXPECT_TRUE(loader.hasPageTitle());
    startMainFrame();
    client().loadFailed(mainFrame, urlError(NSURLErrorCancelled));
    EXPECT_TRUE(loader._receivedTitle);
}

// Policy and authentication

TEST_F(LoaderTest, OnlyLoadsOfTypeOtherAreAllowed) {
    const NSURL target = url(u"https://b.example/");
    EXPECT_TRUE(client().shouldNavigate(mainFrame, NavigationType::other, target));
    for (const auto type :
         {NavigationType::linkClicked, NavigationType::formSubmitted, NavigationType::backForward,
          NavigationType::reload, NavigationType::formResubmitted}) {
        EXPECT_FALSE(client().shouldNavigate(mainFrame, type, target)) << static_cast<int>(type);
    }
}

struct RecordingListener final : WebPolicyDecisionListener {
    void use() override { answers += "use "; }

    void ignore() override { answers += "ignore "; }

    std::string answers;
};

TEST_F(LoaderTest, ANavigationOfUnknownTypeIsIgnored) {
    RecordingListener listener;
    loader.webView_decidePolicyForNavigationAction_request_frame_decisionListener(
        *loader._view, NSDictionary::dictionary(), {}, loader._view->mainFrame(), listener);
    EXPECT_EQ(listener.answers, "ignore ");
}

TEST_F(LoaderTest, WindowsAreNeverOpened) {
    RecordingListener listener;
    loader.webView_decidePolicyForNewWindowAction_request_newFrameName_decisionListener(
        *loader._view, {{NSString(WebActionNavigationTypeKey), NSNumber::numberWithInteger(5)}}, {},
        u"_blank", listener);
    EXPECT_EQ(listener.answers, "ignore ");
}

struct RecordingSender final : NSURLAuthenticationChallengeSender {
    void cancelAuthenticationChallenge(const NSURLAuthenticationChallenge& challenge) override {
        cancelled.push_back(&challenge);
    }

    std::vector<const NSURLAuthenticationChallenge*> cancelled;
};

TEST_F(LoaderTest, AuthenticationIsCancelledAndCountsAsAnError) {
    loader._error = NSError::errorWithDomain_code_userInfo(
        NSURLErrorDomain, NSURLErrorCannotFindHost,
        {{NSString(NSLocalizedDescriptionKey), NSString(u"Not found.")}});
    RecordingSender sender;
    const NSURLAuthenticationChallenge challenge(url(u"https://a.example/image.png"), sender);
    loader.webView_resource_didReceiveAuthenticationChallenge_fromDataSource(*loader._view, NSString(u"1"),
                                                                             challenge, nullptr);
    EXPECT_THAT(sender.cancelled, ElementsAre(&challenge));
    EXPECT_EQ(loader._error, urlError(NSURLErrorUserAuthenticationRequired));
    EXPECT_EQ(loader._error.userInfo().count(), 0U);
}

TEST_F(LoaderTest, AuthenticationForAFrameCountsToo) {
    attachChild();
    client().authenticationRequired("child", url(u"https://a.example/"));
    EXPECT_EQ(loader._error, urlError(NSURLErrorUserAuthenticationRequired));
}

// Log lines

TEST_F(LoaderTest, NamesTheUnitTheLineAndTheMethod) {
    log.install({QRVLoggerAllAreas, QRVLoggerIncludeFile, QRVLoggerIncludeLine, QRVLoggerIncludeFunction});
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    startMainFrame();
    finishMainFrame();
    loader.waitUntilDone();
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            testing::MatchesRegex(
                "\\[LogTest\\] loader:[0-9]+ -\\[Loader webView:didStartProvisionalLoadForFrame:\\] .*"),
            testing::MatchesRegex(
                "\\[LogTest\\] loader:[0-9]+ -\\[Loader webView:didFinishLoadForFrame:\\] .*"),
            testing::MatchesRegex("\\[LogTest\\] loader:[0-9]+ -\\[Loader progressFinished:\\] .*"),
            testing::MatchesRegex("\\[LogTest\\] loader:[0-9]+ -\\[Loader waitUntilDone\\] Loading.*"),
            testing::MatchesRegex("\\[LogTest\\] loader:[0-9]+ -\\[Loader waitUntilDone\\] Extra.*"),
            testing::MatchesRegex("\\[LogTest\\] loader:[0-9]+ -\\[Loader waitUntilDone\\] done.*")));
}

TEST_F(LoaderTest, LogsUnderTheNamesThatItIsGiven) {
    log.install({QRVLoggerAllAreas, QRVLoggerIncludeFile, QRVLoggerIncludeLine, QRVLoggerIncludeFunction});
    loader.logFile_line_function_format("Source/Tools/unit", 12, "method", u"%@ of %d", NSString(u"one"), 2);
    EXPECT_THAT(log.lines(), ElementsAre("[LogTest] unit:12 method one of 2"));
    log.install({});
    loader.logFile_line_function_format("Source/Tools/unit", 12, "method", u"%@", NSString(u"disabled"));
    EXPECT_THAT(log.lines(), SizeIs(1));
}

TEST_F(LoaderTest, AsksForItsAreaOncePerLine) {
    struct CountingLoader final : Loader {
        NSString logArea() const override {
            ++questions;
            return u"LogTest";
        }

        mutable int questions = 0;
    } counting;

    counting.logFile_line_function_format("unit", 1, "method", u"line");
    EXPECT_EQ(counting.questions, 1);
    log.install({});
    counting.logFile_line_function_format("unit", 1, "method", u"line");
    EXPECT_EQ(counting.questions, 2);
}

TEST_F(LoaderTest, ADisabledAreaLogsNothingButTheLinesWithoutArea) {
    log.install({});
    startMainFrame();
    loader.webView_didStartProvisionalLoadForFrame(*loader._view, nullptr);
    EXPECT_THAT(log.lines(), ElementsAre(" didStartProvisionalLoadForFrame got nil frame"));
}

// Settings

TEST_F(LoaderTest, UnsetSettingsHaveTheirDefaults) {
    EXPECT_EQ(loader.webToolTimeout(), 10);
    EXPECT_FALSE(loader.shouldEnablePlugIns());
    EXPECT_EQ(loader.maxTriesBeforeTimeout(), 3U);
    EXPECT_EQ(loader.webToolExtraLoadingTime(), 2);
    EXPECT_EQ(loader.margin(), 36.0);
    EXPECT_TRUE(loader.unrollsScrollers());
    EXPECT_FALSE(loader.writesXMP());
    EXPECT_FALSE(loader.attachesArchive());
}

TEST_F(LoaderTest, TheEnvironmentCanWishForWhatSettingsDoNot) {
    for (const char* value : {"0", "", "yes", " 1", "11"}) {
        const Variable metadata("WEB2PDF_XMP", value);
        const Variable archive("WEB2PDF_ATTACH_ARCHIVE", value);
        EXPECT_FALSE(loader.writesXMP()) << value;
        EXPECT_FALSE(loader.attachesArchive()) << value;
    }
    {
        const Variable variable("WEB2PDF_XMP", "1");
        EXPECT_TRUE(loader.writesXMP());
        EXPECT_FALSE(loader.attachesArchive());
    }
    const Variable variable("WEB2PDF_ATTACH_ARCHIVE", "1");
    EXPECT_FALSE(loader.writesXMP());
    EXPECT_TRUE(loader.attachesArchive());
}

TEST_F(LoaderTest, SettingsAreReadAtEachCall) {
    setSettings("<key>WebToolTimeout</key><integer>11</integer><key>WebToolEnableWebPlugIns</key><true/>"
                "<key>WebToolMaxTriesBeforeTimeout</key><integer>4</integer>"
                "<key>WebToolExtraLoadingTime</key><integer>7</integer>"
                "<key>Web2PDFPageMargin</key><integer>-3</integer>"
                "<key>Web2PDFUnrollScrollers</key><false/>"
                "<key>Web2PDFWritesXMP</key><true/><key>Web2PDFAttachesArchive</key><true/>");
    EXPECT_EQ(loader.webToolTimeout(), 11);
    EXPECT_TRUE(loader.shouldEnablePlugIns());
    EXPECT_EQ(loader.maxTriesBeforeTimeout(), 4U);
    EXPECT_EQ(loader.webToolExtraLoadingTime(), 7);
    EXPECT_EQ(loader.margin(), -3.0);
    EXPECT_FALSE(loader.unrollsScrollers());
    EXPECT_TRUE(loader.writesXMP());
    EXPECT_TRUE(loader.attachesArchive());
    setSettings("<key>WebToolTimeout</key><integer>12</integer>");
    EXPECT_EQ(loader.webToolTimeout(), 12);
    EXPECT_EQ(loader.margin(), 36.0);
}

TEST_F(LoaderTest, UnusableSettingsYieldTheDefaults) {
    setSettings("<key>WebToolTimeout</key><array/><key>WebToolEnableWebPlugIns</"
                "key><date>2001-01-01T00:00:00Z</date><key>Web2PDFUnrollScrollers</key><array/>"
                "<key>Web2PDFWritesXMP</key><array/><key>Web2PDFAttachesArchive</key><dict/>");
    EXPECT_EQ(loader.webToolTimeout(), 10);
    EXPECT_FALSE(loader.shouldEnablePlugIns());
    EXPECT_TRUE(loader.unrollsScrollers());
    EXPECT_FALSE(loader.writesXMP());
    EXPECT_FALSE(loader.attachesArchive());
}

} // namespace
} // namespace qrv
