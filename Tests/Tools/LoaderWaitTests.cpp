// The wait of the loader: how long it lasts, what ends it and what it logs.

#include "Platform/Foundation/NSAutoreleasePool.h"
#include "Tests/Tools/LoaderTest.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using engine::mainFrame;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using LoaderWaitTest = LoaderTest;

TEST_F(LoaderWaitTest, EndsAboutTwoSecondsAfterTheOnlyFrameFinished) {
    time.inNextSlice([&] { startMainFrame(); });
    time.inNextSlice([&] { finishMainFrame(); });
    time.inNextSlice([] {});
    time.inNextSlice([&] { EXPECT_FALSE(loader._finishDate.isNil()); });
    startMainFrame();
    loader.waitUntilDone();

    // Empty from the second slice on: the ten slices after it fit into two seconds, the eleventh goes beyond.
    EXPECT_EQ(time.slices, 2 + 10);
    EXPECT_NEAR(time.sliceLength, 0.2, 1e-9);
    const auto extra = log.startingWith("[LogTest] Extra wait in loop for WebView to finish loading: ");
    ASSERT_THAT(extra, SizeIs(11));
    EXPECT_EQ(extra[0], "[LogTest] Extra wait in loop for WebView to finish loading: (null)");
    const NSDate finish = NSDate::dateWithTimeIntervalSinceReferenceDate(ScriptedTime::start + 2 * 0.201 + 2);
    EXPECT_EQ(extra[1],
              "[LogTest] Extra wait in loop for WebView to finish loading: " + finish.description().utf8());
    EXPECT_TRUE(loader._finishDate.isNil());
    EXPECT_TRUE(loader._error.isNil());
}

TEST_F(LoaderWaitTest, LogsEachPassAndTheEnd) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    startMainFrame();
    log.clear();
    time.inNextSlice([&] { client().loadCommitted(mainFrame, url(u"https://a.example/"), u"text/html"); });
    time.inNextSlice([&] { client().loadFinished(mainFrame); });
    loader.waitUntilDone();
    EXPECT_THAT(
        log.lines(),
        ElementsAre("[LogTest] Loading 1 objects:",
                    "[LogTest]     " + mainFrameText() +
                        ": dataSource (null) ((null)); provisionalDataSource: https://a.example/ ((null))",
                    "[LogTest] Loading 1 objects:",
                    "[LogTest]     " + mainFrameText() +
                        ": dataSource https://a.example/ (text/html); provisionalDataSource: (null) ((null))",
                    "[LogTest] didFinishLoadForFrame: " + mainFrameText(), //
                    "[LogTest] Progress finished",
                    "[LogTest] Extra wait in loop for WebView to finish loading: (null)",
                    "[LogTest] done loading: " + NSArray::array().description().utf8()));
}

TEST_F(LoaderWaitTest, TheEndIsCountedFromNowAndMayBeSetAgain) {
    loader.extendFinishDate(3);
    EXPECT_EQ(loader._finishDate.timeIntervalSinceReferenceDate(), ScriptedTime::start + 3);
    ScriptedTime::now += 5;
    loader.extendFinishDate(0.5);
    EXPECT_EQ(loader._finishDate.timeIntervalSinceReferenceDate(), ScriptedTime::start + 5.5);
}

TEST_F(LoaderWaitTest, AnEndSetBeforehandIsKept) {
    loader.extendFinishDate(0.7);
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 4) << "instead of the ten of the usual two seconds";
}

TEST_F(LoaderWaitTest, NoExtraTimeEndsInTheFirstPassWithAnEmptyList) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    startMainFrame();
    time.inNextSlice([] {});
    time.inNextSlice([&] { finishMainFrame(); });
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 2);
}

TEST_F(LoaderWaitTest, LessThanNoExtraTimeEndsThereToo) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>-3</integer>");
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 1);
}

TEST_F(LoaderWaitTest, AnEndOfThisVeryMomentHasNotPassed) {
    time.inNextSlice([&] { loader._finishDate = time.endOfSlice(); });
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 2);
}

TEST_F(LoaderWaitTest, AnEmptyListFromTheBeginningStillTakesTheExtraTime) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>1</integer>");
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 1 + 5);
}

TEST_F(LoaderWaitTest, LaterLoadsDoNotMoveTheFinishDate) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>1</integer>");
    time.inNextSlice([] {});
    time.inNextSlice([&] { startMainFrame(); });
    for (int i = 0; i < 20; ++i) time.inNextSlice([] {});
    time.inNextSlice([&] { finishMainFrame(); });
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 1 + 1 + 20 + 1);
}

TEST_F(LoaderWaitTest, AnotherWaitStartsAfresh) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>1</integer>");
    loader.waitUntilDone();
    time.slices = 0;
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 1 + 5);
}

TEST_F(LoaderWaitTest, ADeadlineInThePastEndsTheWaitWithoutRunningTheLoop) {
    startMainFrame();
    loader._error = urlError(NSURLErrorTimedOut);
    loader._timeoutDate = NSDate::dateWithTimeIntervalSinceReferenceDate(ScriptedTime::start - 1);
    log.clear();
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 0);
    ASSERT_THAT(log.lines(), SizeIs(4));
    EXPECT_EQ(log.lines()[0], "[LogTest] Loading 1 objects:");
    EXPECT_EQ(log.lines()[2], "[LogTest] Timing out");
    EXPECT_EQ(log.lines()[3],
              "[LogTest] done loading: " + NSArray(loader._objectsLoading).description().utf8());
    EXPECT_EQ(loader._error, urlError(NSURLErrorTimedOut));
    EXPECT_THAT(loader.progresses, IsEmpty());
}

TEST_F(LoaderWaitTest, ADeadlineOfThisVeryMomentHasNotPassed) {
    startMainFrame();
    loader._timeoutDate = NSDate::date();
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 1);
}

TEST_F(LoaderWaitTest, ALoaderThatJustWantsTheTitleStopsOnceItIsKnown) {
    loader._justTitle = true;
    startMainFrame();
    time.inNextSlice([&] { attachChild(); });
    time.inNextSlice([&] {
        client().loadCommitted(mainFrame, url(u"https://a.example/"), u"text/html");
        client().titleChanged(mainFrame, u"Title");
    });
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 2);
    EXPECT_THAT(loader._objectsLoading, SizeIs(1));
    EXPECT_TRUE(loader.hasPageTitle());
    EXPECT_EQ(loader.pageTitle(), NSString(u"Title"));
}

TEST_F(LoaderWaitTest, ATitleEndsNoOtherWait) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    startMainFrame();
    time.inNextSlice([&] {
        client().loadCommitted(mainFrame, url(u"https://a.example/"), u"text/html");
        client().titleChanged(mainFrame, u"Title");
    });
    time.inNextSlice([] {});
    time.inNextSlice([&] { client().loadFinished(mainFrame); });
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 3);
}

TEST_F(LoaderWaitTest, ALoaderThatJustWantsTheTitleIsNotContentWithAFrames) {
    loader._justTitle = true;
    loader._receivedTitle = true; // of a frame
    startMainFrame();
    time.inNextSlice([&] { finishMainFrame(); });
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 1);
}

TEST_F(LoaderWaitTest, ALoaderThatJustWantsTheTitleWaitsNoExtraTime) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>5</integer>");
    EXPECT_EQ(loader.webToolExtraLoadingTime(), 5);
    loader._justTitle = true;
    EXPECT_EQ(loader.webToolExtraLoadingTime(), 0);
    loader.waitUntilDone();
    EXPECT_EQ(time.slices, 1);
}

TEST_F(LoaderWaitTest, AFramesTitleIsNoPageTitle) {
    startMainFrame();
    attachChild();
    client().loadStarted("child", url(u"https://a.example/child"));
    client().loadCommitted("child", url(u"https://a.example/child"), u"text/html");
    EXPECT_FALSE(loader._receivedTitle);
    client().titleChanged("child", u"Title of the child");
    EXPECT_TRUE(loader._receivedTitle);
    EXPECT_TRUE(loader.pageTitle().isNil());
    EXPECT_FALSE(loader.hasPageTitle());
}

TEST_F(LoaderWaitTest, TellsTheProgressBeforeEachSlice) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    startMainFrame();
    time.inNextSlice([&] { client().progressChanged(0.5); });
    time.inNextSlice([&] { finishMainFrame(); });
    loader.waitUntilDone();
    EXPECT_THAT(loader.progresses, ElementsAre(0, 0.5));
}

TEST_F(LoaderWaitTest, EachPassHasAScopeUnlessTheSettingForbidsIt) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    std::size_t scopes = 0;
    time.inNextSlice([&] { scopes = NSAutoreleasePool::openScopes(); });
    loader.waitUntilDone();
    EXPECT_EQ(scopes, NSAutoreleasePool::openScopes() + 1);

    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer><key>LoaderUsePool</key><false/>");
    time.inNextSlice([&] { scopes = NSAutoreleasePool::openScopes(); });
    loader.waitUntilDone();
    EXPECT_EQ(scopes, NSAutoreleasePool::openScopes());
}

TEST_F(LoaderWaitTest, WhetherPassesHaveAScopeIsReadOnce) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    startMainFrame();
    std::size_t scopes = 0;
    time.inNextSlice([&] {
        setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer><key>LoaderUsePool</key><false/>");
    });
    time.inNextSlice([&] {
        scopes = NSAutoreleasePool::openScopes();
        finishMainFrame();
    });
    loader.waitUntilDone();
    EXPECT_EQ(scopes, NSAutoreleasePool::openScopes() + 1);
}

TEST_F(LoaderWaitTest, OldPlatformsHaveNoScopeByDefault) {
    NSProcessInfo::processInfo().setVersionForTesting({.foundation = 945, .system = {10, 8, 0}});
    std::size_t scopes = 0;
    time.inNextSlice([&] { scopes = NSAutoreleasePool::openScopes(); });
    loader.waitUntilDone();
    NSProcessInfo::processInfo().setVersionForTesting();
    EXPECT_EQ(scopes, NSAutoreleasePool::openScopes());
}

TEST_F(LoaderWaitTest, WaitsOnTheRealRunLoop) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
    NSRunLoop::setCurrentRunLoopForTesting(nullptr);
    NSDate::setClockForTesting(nullptr);
    startMainFrame();
    const auto finish = NSRunLoop::currentRunLoop().performSoon([&] { finishMainFrame(); });
    loader.waitUntilDone();
    EXPECT_EQ(log.count("[LogTest] Loading 1 objects:"), 1);
    EXPECT_EQ(log.count("[LogTest] Loading 0 objects:"), 0);
    EXPECT_THAT(loader._objectsLoading, IsEmpty());
}

} // namespace
} // namespace qrv
