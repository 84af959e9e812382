#include "Source/Tools/PDFLoader.h"

#include "Platform/AppKit/NSApplication.h"
#include "Platform/AppKit/NSPrintInfo.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/PDFKit/PDFDocument.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Tools/ToolTest.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using engine::mainFrame;
using testing::ElementsAre;

/// One empty page whose information names the program that rendered it.
NSData smallPDF() {
    return NSData(makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                           "<</Type /Page /Parent 2 0 R /MediaBox [0 0 612 792]>>",
                           "<</Creator (Renderer) /Producer (Renderer 1)>>"},
                          "/Info 4 0 R"));
}

/// A loader with its insides open.
class OpenedLoader final : public PDFLoader {
public:
    using Loader::_error;
    using Loader::_view;
    using PDFLoader::_uid;
    using PDFLoader::_url;
    using PDFLoader::_window;
    using PDFLoader::printToFile;
    using PDFLoader::writeScreenPDF;
};

/// Writes down what it is asked, and has its size only once it is laid out.
class RecordingView final : public NSView {
public:
    RecordingView() : NSView(NSRect{{5, 6}, {10, 20}}) {}

    void setFrame(NSRect frame) override {
        NSView::setFrame(frame);
        note("setFrame", frame);
    }

    void layout() override {
        calls.emplace_back("layout");
        NSView::setFrame({{}, {300, 4000}});
    }

    NSData dataWithPDFInsideRect(NSRect rect) override {
        note("draw", rect);
        return smallPDF();
    }

    NSData dataForPrinting(const NSPrintInfo& printInfo) override {
        settings = std::make_unique<NSPrintInfo>(printInfo);
        return smallPDF();
    }

    void note(const char* what, NSRect rect) {
        calls.push_back(NSString::stringWithFormat(u"%s %g %g %g %g", what, rect.origin.x, rect.origin.y,
                                                   rect.size.width, rect.size.height)
                            .utf8());
    }

    std::vector<std::string> calls;
    std::unique_ptr<NSPrintInfo> settings;
};

class PDFLoaderTest : public ToolTest {
protected:
    PDFLoaderTest() {
        setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
        setMode(u"screen");
        NSApplicationLoad();
    }

    static void setMode(const char16_t* mode) {
        NSProcessInfo::processInfo().setArgumentsForTesting(
            NSArray({NSString(u"web2pdf"), NSString(mode), NSString(u"-"), NSString(u"-"), NSString(u"-")}));
    }

    static ScriptedPage& page() { return *ScriptedPage::latest; }

    static engine::PageClient& client() { return page().client; }

    /// The path of an archive of an empty page; without a URL for nil.
    NSString archive(const NSString& url) const {
        NSMutableDictionary resource;
        resource.setObject_forKey(NSData("<p>"), NSString(u"WebResourceData"));
        resource.setObject_forKey(NSString(u"text/html"), NSString(u"WebResourceMIMEType"));
        if (url) resource.setObject_forKey(url, NSString(u"WebResourceURL"));
        const NSData data =
            dataFromPropertyList(NSDictionary{{NSString(u"WebMainResource"), resource.copy()}});
        return folder.write("page.webarchive", data.bytes());
    }

    /// Loads an archive of this page, which arrives in the next slice.
    void load(const NSString& url, const NSString& title = {}) {
        time.inNextSlice([=] { page().loadPage(url, title); });
        loader.loadWebArchivePath_uid(archive(url), u"uid");
        page().pdfToAnswer = smallPDF();
    }

    NSString pdfPath() const { return folder.pathOf("page.pdf"); }

    std::optional<int> save() {
        return exitStatusOf([this] { loader.savePDF(pdfPath()); });
    }

    void expectSuccess() const {
        EXPECT_EQ(resultKeys(), "succeeded path");
        EXPECT_EQ(result().objectForKey(NSString(u"path")), id(pdfPath()));
    }

    void expectError(const char16_t* domain, long long code, const NSString& path) const {
        EXPECT_EQ(resultError().domain(), NSString(domain));
        EXPECT_EQ(resultError().code(), code);
        EXPECT_EQ(resultError().userInfo().objectForKey(NSString(NSFilePathErrorKey)), id(path));
    }

    std::string attribute(const char16_t* key) const {
        const auto document = PDFDocument::initWithURL(NSURL::fileURLWithPath(pdfPath()));
        if (!document) return "no document";
        const id value = document->documentAttributes().objectForKey(NSString(key));
        return value ? value.description().utf8() : "nothing";
    }

    /// The Author for a page of this address.
    std::string authorFor(const char16_t* url) {
        load(url);
        EXPECT_EQ(save(), 0);
        return attribute(PDFDocumentAuthorAttribute);
    }

    PDFLoader loader;
};

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
    EXPECT_EQ(loadWithFrames({u"FRAME"}, NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, -1003, {})),
              0);
    expectError(u"qvweb2pdf.frames", 0, folder.pathOf("page.webarchive"));
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
        time.inNextSlice([] { page().loadPage(u"https://a.example/"); });
        opened.loadWebArchivePath_uid(archive(u"https://a.example/"), u"uid");
        EXPECT_EQ(opened._view->preferences().arePlugInsEnabled(), enabled);
    }
}

TEST_F(PDFLoaderTest, TheDocumentIsLaidOutInItsOwnBoundsBeforeItIsDrawn) {
    const OpenedLoader opened;
    RecordingView document;
    opened.writeScreenPDF(&document, pdfPath());
    EXPECT_THAT(document.calls, ElementsAre("setFrame 0 0 10 20", "layout", "draw 0 0 300 4000"));
    EXPECT_EQ(folder.read("page.pdf"), smallPDF().bytes());
}

TEST_F(PDFLoaderTest, APrintFitsTheWidthAndBreaksTheHeightIntoPages) {
    setSettings("<key>Web2PDFPageMargin</key><integer>50</integer>");
    const OpenedLoader opened;
    RecordingView document;
    opened.printToFile(&document, pdfPath());
    ASSERT_TRUE(document.settings);
    const NSPrintInfo& settings = *document.settings;
    EXPECT_EQ(settings.horizontalPagination(), NSPrintingPaginationModeFit);
    EXPECT_EQ(settings.verticalPagination(), NSPrintingPaginationModeAutomatic);
    EXPECT_FALSE(settings.isHorizontallyCentered());
    EXPECT_FALSE(settings.isVerticallyCentered());
    EXPECT_EQ(settings.topMargin(), 50);
    EXPECT_EQ(settings.bottomMargin(), 50);
    EXPECT_EQ(settings.leftMargin(), 50);
    EXPECT_EQ(settings.rightMargin(), 50);
    EXPECT_EQ(settings.jobDisposition(), NSString(NSPrintSaveJob));
    EXPECT_EQ(settings.jobSavingURL(), NSURL::fileURLWithPath_isDirectory(pdfPath(), false));
    EXPECT_EQ(settings.paperSize(), NSPrintInfo::sharedPrintInfo().paperSize());
    EXPECT_EQ(NSPrintInfo::sharedPrintInfo().leftMargin(), 72) << "the shared settings stay";
    EXPECT_EQ(folder.read("page.pdf"), smallPDF().bytes());
}

TEST_F(PDFLoaderTest, WithoutADocumentNothingIsWritten) {
    const OpenedLoader opened;
    opened.writeScreenPDF(nullptr, pdfPath());
    opened.printToFile(nullptr, pdfPath());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "page.pdf"));
}

// What is written

TEST_F(PDFLoaderTest, NothingRenderedEndsWithThePrintFailedError) {
    for (const char16_t* mode : {u"screen", u"print"}) {
        setMode(mode);
        load(u"https://a.example/");
        page().pdfToAnswer = {};
        EXPECT_EQ(save(), 0);
        expectError(NSCocoaErrorDomain, 512, pdfPath());
        EXPECT_EQ(resultKeys(), "succeeded errorData errorString");
    }
}

TEST_F(PDFLoaderTest, APageThatNeverArrivedDrawsNothing) {
    for (const char16_t* mode : {u"screen", u"print"}) {
        setMode(mode);
        page().pdfToAnswer = smallPDF();
        EXPECT_EQ(save(), 0);
        expectError(NSCocoaErrorDomain, 512, pdfPath());
    }
}

TEST_F(PDFLoaderTest, ADirectoryAtTheOutputPathEndsWithThePrintFailedError) {
    std::filesystem::create_directory(folder.path() / "page.pdf");
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    expectError(NSCocoaErrorDomain, 512, pdfPath());
    EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "page.pdf"));
}

TEST_F(PDFLoaderTest, AnOldFileIsKeptAndGetsNewAttributesWhenNothingIsRendered) {
    folder.write("page.pdf", smallPDF().bytes());
    load(u"https://a.example/", u"New title");
    page().pdfToAnswer = {};
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(attribute(PDFDocumentProducerAttribute), "Renderer 1");
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "New title");
}

TEST_F(PDFLoaderTest, AFileThatIsNoPDFStaysAsItIsAndCountsAsSuccess) {
    load(u"https://a.example/");
    page().pdfToAnswer = NSData("no PDF");
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(folder.read("page.pdf"), "no PDF");
}

// Attributes

TEST_F(PDFLoaderTest, SetsFourAttributesAndKeepsTheOthers) {
    load(u"https://www.a.example/path?q=1#part", u"Tïtle (1)");
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(attribute(PDFDocumentCreatorAttribute), "Quillvane");
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "Tïtle (1)");
    EXPECT_EQ(attribute(PDFDocumentSubjectAttribute), "https://www.a.example/path?q=1#part");
    EXPECT_EQ(attribute(PDFDocumentAuthorAttribute), "a.example");
    EXPECT_EQ(attribute(PDFDocumentProducerAttribute), "Renderer 1");
}

TEST_F(PDFLoaderTest, APageWithoutTitleHasAnEmptyTitle) {
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "");
}

TEST_F(PDFLoaderTest, AnArchiveWithoutURLHasEmptySubjectAndAuthor) {
    time.inNextSlice([] { page().loadPage(u"http://stand-in.example/"); });
    loader.loadWebArchivePath_uid(archive({}), u"uid");
    page().pdfToAnswer = smallPDF();
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(attribute(PDFDocumentSubjectAttribute), "");
    EXPECT_EQ(attribute(PDFDocumentAuthorAttribute), "");
}

TEST_F(PDFLoaderTest, OnlyOnePrefixIsRemovedFromTheHost) {
    EXPECT_EQ(authorFor(u"https://www.www.a.example/"), "www.a.example");
}

TEST_F(PDFLoaderTest, APrefixInCapitalsStays) {
    EXPECT_EQ(authorFor(u"https://WWW.a.example/"), "WWW.a.example");
}

TEST_F(PDFLoaderTest, APrefixWithoutItsDotStays) {
    EXPECT_EQ(authorFor(u"https://www2.a.example/"), "www2.a.example");
}

TEST_F(PDFLoaderTest, AFileURLHasNoAuthor) {
    EXPECT_EQ(authorFor(u"file:///tmp/page.html"), "");
    EXPECT_EQ(attribute(PDFDocumentSubjectAttribute), "file:///tmp/page.html");
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
