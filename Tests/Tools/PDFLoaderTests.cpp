#include "Source/Tools/PDFLoader.h"

#include "Platform/Foundation/NSException.h"
#include "Tests/Tools/PDFLoaderTest.h"

namespace qrv {
namespace {

using engine::mainFrame;

TEST_F(PDFLoaderTest, LogsInTheToolsArea) {
    EXPECT_EQ(loader.logArea(), NSString(u"LogWeb2PDF"));
}

// Loading

TEST_F(PDFLoaderTest, LoadsTheArchiveAndReturns) {
    EXPECT_EQ(exitStatusOf([&] { load(u"https://a.example/"); }), std::nullopt);
    EXPECT_EQ(page().loadedArchive.mainResource().URL().absoluteString(), NSString(u"https://a.example/"));
    EXPECT_TRUE(result().isNil());
}

TEST_F(PDFLoaderTest, AMissingArchiveEndsWithTheReadError) {
    const NSString path = folder.pathOf("missing.webarchive");
    EXPECT_EQ(exitStatusOf([&] { loader.loadWebArchivePath_uid(path, u"uid"); }), 0);
    expectError(NSCocoaErrorDomain, 260, path);
    EXPECT_TRUE(page().loadedArchive.isNil());
}

TEST_F(PDFLoaderTest, AFileThatIsNoArchiveEndsWithTheBadArchiveError) {
    const NSString path = folder.write("bad.webarchive", "<html>");
    EXPECT_EQ(exitStatusOf([&] { loader.loadWebArchivePath_uid(path, u"uid"); }), 0);
    expectError(NSCocoaErrorDomain, 259, path);
    EXPECT_TRUE(page().loadedArchive.isNil());
}

TEST_F(PDFLoaderTest, ALoadErrorEndsTheRunUnchanged) {
    const NSError error = NSError::errorWithDomain_code_userInfo(
        NSURLErrorDomain, NSURLErrorCannotFindHost,
        {{NSString(NSURLErrorFailingURLStringErrorKey), NSString(u"url")}});
    time.inNextSlice([&] { client().loadFailed(mainFrame, error); });
    EXPECT_EQ(exitStatusOf([&] { loader.loadWebArchivePath_uid(archive(u"https://a.example/"), u"uid"); }),
              0);
    EXPECT_EQ(resultError(), error);
}

TEST_F(PDFLoaderTest, ACancelledLoadIsNoFailure) {
    time.inNextSlice([&] {
        client().loadFailed(
            mainFrame, NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, NSURLErrorCancelled, {}));
    });
    EXPECT_EQ(exitStatusOf([&] { loader.loadWebArchivePath_uid(archive(u"https://a.example/"), u"uid"); }),
              std::nullopt);
}

TEST_F(PDFLoaderTest, TheCodeOfACancelledLoadInAnotherDomainIsAFailure) {
    time.inNextSlice([&] {
        client().loadFailed(
            mainFrame, NSError::errorWithDomain_code_userInfo(NSCocoaErrorDomain, NSURLErrorCancelled, {}));
    });
    EXPECT_EQ(exitStatusOf([&] { loader.loadWebArchivePath_uid(archive(u"https://a.example/"), u"uid"); }),
              0);
    EXPECT_EQ(resultError().code(), -999);
}

// Framesets

class FramesTest : public PDFLoaderTest {
protected:
    /// Loads a page with a frame in an element of each of these names.
    std::optional<int> loadWithFrames(const std::vector<const char16_t*>& elements,
                                      const NSError& error = {}) {
        time.inNextSlice([=] {
            client().loadCommitted(mainFrame, NSURL::URLWithString(u"https://a.example/"), u"text/html");
            for (std::size_t i = 0; i < elements.size(); ++i) {
                const auto frame = "child" + std::to_string(i);
                client().frameAttached(frame, mainFrame);
                page().ownerElements[frame] = elements[i];
            }
            if (error) {
                client().loadFailed(mainFrame, error);
            } else {
                client().loadFinished(mainFrame);
            }
        });
        return exitStatusOf([&] { loader.loadWebArchivePath_uid(archive(u"https://a.example/"), u"uid"); });
    }
};

TEST_F(FramesTest, AFramesetIsRefused) {
    EXPECT_EQ(loadWithFrames({u"IFRAME", u"FRAME"}), 0);
    expectError(u"qvweb2pdf.frames", 0, folder.pathOf("page.webarchive"));
}

TEST_F(FramesTest, AFramesetIsRefusedAsSuchEvenWhenItsLoadFailed) {
    for (const long long code : {NSURLErrorCannotFindHost, NSURLErrorCancelled}) {
        folder.write("result.plist", "");
        const NSError error = NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, code, {});
        EXPECT_EQ(loadWithFrames({u"FRAME"}, error), 0);
        expectError(u"qvweb2pdf.frames", 0, folder.pathOf("page.webarchive"));
    }
}

TEST_F(FramesTest, InlineFramesAreConverted) {
    EXPECT_EQ(loadWithFrames({u"IFRAME", u"OBJECT"}), std::nullopt);
    EXPECT_FALSE(loader.isShowingFrames());
}

TEST_F(FramesTest, DeeperFramesAreNotLookedAt) {
    EXPECT_EQ(loadWithFrames({u"IFRAME"}), std::nullopt);
    client().frameAttached("grandchild", "child0");
    page().ownerElements["grandchild"] = u"FRAME";
    EXPECT_FALSE(loader.isShowingFrames());
}

// Modes

TEST_F(PDFLoaderTest, TheModeIsComparedExactly) {
    EXPECT_TRUE(loader.createScreenPDFs());
    for (const char16_t* mode : {u"Screen", u"screen ", u"print", u""}) {
        setMode(mode);
        EXPECT_FALSE(loader.createScreenPDFs());
    }
}

TEST_F(PDFLoaderTest, TheViewStandsInAWindowLargerThanThePaper) {
    OpenedLoader opened;
    EXPECT_EQ(opened._view->superview(), nullptr);
    opened.setupWindow();
    const NSSize paper = NSPrintInfo::sharedPrintInfo().paperSize();
    EXPECT_EQ(opened._view->frame().size, paper);
    ASSERT_NE(opened._view->superview(), nullptr);
    EXPECT_EQ(opened._view->superview()->frame().size, (NSSize{paper.width + 200, paper.height + 200}));
}

TEST_F(PDFLoaderTest, TheViewGetsThePapersSizeAndTheScreensStyle) {
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    const NSSize paper = NSPrintInfo::sharedPrintInfo().paperSize();
    EXPECT_EQ(page().viewSize.width, paper.width);
    EXPECT_EQ(page().viewSize.height, paper.height);
    EXPECT_EQ(page().mediaStyle, NSString(u"screen"));
    EXPECT_TRUE(page().printsBackgrounds);
}

TEST_F(PDFLoaderTest, ThePageKnowsThePaperOfItsPDFBeforeItIsLoaded) {
    setMode(u"screen");
    load(u"https://a.example/");
    const NSSize paper = NSPrintInfo::sharedPrintInfo().paperSize();
    EXPECT_TRUE(page().wasPreparedForLoad);
    EXPECT_EQ(page().expectedScreenPaper, paper);
    EXPECT_EQ(page().expectedPrintPaper, NSSize());
}

TEST_F(PDFLoaderTest, ThePageKnowsPaperAndMarginOfItsPrintBeforeItIsLoaded) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>"
                "<key>Web2PDFPageMargin</key><integer>50</integer>");
    setMode(u"print");
    load(u"https://a.example/");
    EXPECT_TRUE(page().wasPreparedForLoad);
    EXPECT_EQ(page().expectedScreenPaper, NSSize());
    EXPECT_EQ(page().expectedPrintPaper, NSPrintInfo::sharedPrintInfo().paperSize());
    EXPECT_EQ(page().expectedMargin, 50);
}

TEST_F(PDFLoaderTest, BoxesThatScrollAreUnrolledUnlessASettingForbids) {
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    EXPECT_TRUE(page().unrollsScrollers);
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>"
                "<key>Web2PDFUnrollScrollers</key><false/>");
    EXPECT_EQ(save(), 0);
    EXPECT_FALSE(page().unrollsScrollers);
}

TEST_F(PDFLoaderTest, ScreenModeWritesTheWholeDocument) {
    load(u"https://a.example/");
    page().documentSizeToAnswer = {612, 5000};
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(page().screenPDFs, 1);
    EXPECT_EQ(page().paginatedPDFs, 0);
    EXPECT_EQ(attribute(PDFDocumentProducerAttribute), "Renderer 1");
}

TEST_F(PDFLoaderTest, AnyOtherModePrintsWithTheMarginOnAllSides) {
    setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>"
                "<key>Web2PDFPageMargin</key><integer>50</integer>");
    setMode(u"Screen");
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(page().screenPDFs, 0);
    EXPECT_EQ(page().paginatedPDFs, 1);
    const NSSize paper = NSPrintInfo::sharedPrintInfo().paperSize();
    EXPECT_EQ(page().paper.width, paper.width);
    EXPECT_EQ(page().paper.height, paper.height);
    EXPECT_EQ(page().margin, 50);
    EXPECT_EQ(page().mediaStyle, NSString(u"screen"));
    EXPECT_TRUE(page().printsBackgrounds);
    EXPECT_EQ(attribute(PDFDocumentProducerAttribute), "Renderer 1");
}

TEST_F(PDFLoaderTest, PlugInsAreSwitchedByTheSetting) {
    for (const bool enabled : {false, true}) {
        setSettings(std::string("<key>WebToolExtraLoadingTime</key><integer>0</integer>"
                                "<key>WebToolEnableWebPlugIns</key>") +
                    (enabled ? "<true/>" : "<false/>"));
        OpenedLoader opened;
        opened._view->preferences().setPlugInsEnabled(!enabled);
        std::optional<bool> atLoad;
        ScriptedPage::onLoad = [&](engine::PageClient&) {
            atLoad = opened._view->preferences().arePlugInsEnabled();
        };
        time.inNextSlice([] { page().loadPage(u"https://a.example/"); });
        opened.loadWebArchivePath_uid(archive(u"https://a.example/"), u"uid");
        EXPECT_EQ(atLoad, enabled);
    }
}

// The whole run

TEST_F(PDFLoaderTest, EachArgumentHasItsPlace) {
    OpenedLoader opened;
    time.inNextSlice([] {
        page().pdfToAnswer = smallPDF();
        page().loadPage(u"https://a.example/");
    });
    const NSArray arguments({NSString(u"web2pdf"), NSString(u"screen"), archive(u"https://a.example/"),
                             pdfPath(), NSString(u"the record")});
    EXPECT_EQ(exitStatusOf([&] { convertWith(opened, arguments); }), 0);
    EXPECT_EQ(opened._uid, NSString(u"the record"));
    EXPECT_EQ(opened._url.absoluteString(), NSString(u"https://a.example/"));
    expectSuccess();
}

TEST_F(PDFLoaderTest, TheToolConvertsAnArchive) {
    applicationIsLoaded = false;
    ScriptedPage::onLoad = [this](engine::PageClient&) {
        page().pdfToAnswer = smallPDF();
        time.inNextSlice([] { page().loadPage(u"https://a.example/", u"Title"); });
    };
    NSProcessInfo::processInfo().setArgumentsForTesting(
        NSArray({NSString(u"web2pdf"), NSString(u"screen"), archive(u"https://a.example/"), pdfPath(),
                 NSString(u"uid")}));
    EXPECT_EQ(exitStatusOf([] { runWeb2PDF(); }), 0);
    expectSuccess();
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "Title");
    EXPECT_EQ(log.lines().back(), "[LogWeb2PDF] finish with error: (null)");
}

TEST_F(PDFLoaderTest, AnExceptionDuringTheWaitBecomesTheResult) {
    time.inNextSlice([] { throw NSException(u"Name", u"because"); });
    NSProcessInfo::processInfo().setArgumentsForTesting(
        NSArray({NSString(u"web2pdf"), NSString(u"screen"), archive(u"https://a.example/"), pdfPath(),
                 NSString(u"uid")}));
    EXPECT_EQ(exitStatusOf([] { runWeb2PDF(); }), 0);
    EXPECT_EQ(result().objectForKey(NSString(u"errorString")), id(NSString(u"Name")));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "page.pdf"));
}

} // namespace
} // namespace qrv
