// What the loader of archives writes: how it has the page drawn, and the file's attributes.

#include "Platform/Foundation/MappedFile.h"
#include "Tests/Support/Variable.h"
#include "Tests/Tools/PDFLoaderTest.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>

namespace qrv {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using PDFLoaderDrawingTest = PDFLoaderTest;

TEST_F(PDFLoaderDrawingTest, TheDocumentIsLaidOutInItsOwnBoundsBeforeItIsDrawn) {
    const OpenedLoader opened;
    RecordingView document;
    folder.write("page.pdf", "old contents");
    std::filesystem::create_hard_link(folder.path() / "page.pdf", folder.path() / "old");
    opened.writeScreenPDF(&document, pdfPath());
    EXPECT_EQ(folder.read("old"), "old contents") << "the file itself stays as it is";
    EXPECT_THAT(document.calls, ElementsAre("setFrame 0 0 10 20", "layout", "draw 0 0 300 4000"));
    EXPECT_EQ(folder.read("page.pdf"), smallPDF().bytes());
}

TEST_F(PDFLoaderDrawingTest, APrintFitsTheWidthAndBreaksTheHeightIntoPages) {
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

TEST_F(PDFLoaderDrawingTest, WithoutADocumentNothingIsWritten) {
    const OpenedLoader opened;
    opened.writeScreenPDF(nullptr, pdfPath());
    opened.printToFile(nullptr, pdfPath());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "page.pdf"));
}

// What is written

TEST_F(PDFLoaderDrawingTest, NothingRenderedEndsWithThePrintFailedError) {
    for (const char16_t* mode : {u"screen", u"print"}) {
        setMode(mode);
        load(u"https://a.example/");
        page().pdfToAnswer = {};
        EXPECT_EQ(save(), 0);
        expectError(NSCocoaErrorDomain, 512, pdfPath());
        EXPECT_EQ(resultKeys(), "succeeded errorData errorString");
    }
}

TEST_F(PDFLoaderDrawingTest, APageThatNeverArrivedDrawsNothing) {
    for (const char16_t* mode : {u"screen", u"print"}) {
        setMode(mode);
        page().pdfToAnswer = smallPDF();
        EXPECT_EQ(save(), 0);
        expectError(NSCocoaErrorDomain, 512, pdfPath());
    }
}

TEST_F(PDFLoaderDrawingTest, ADirectoryAtTheOutputPathEndsWithThePrintFailedError) {
    std::filesystem::create_directory(folder.path() / "page.pdf");
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    expectError(NSCocoaErrorDomain, 512, pdfPath());
    EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "page.pdf"));
}

TEST_F(PDFLoaderDrawingTest, AnOldFileIsKeptAndGetsNewAttributesWhenNothingIsRendered) {
    folder.write("page.pdf", smallPDF().bytes());
    load(u"https://a.example/", u"New title");
    page().pdfToAnswer = {};
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(attribute(PDFDocumentProducerAttribute), "Renderer 1");
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "New title");
}

TEST_F(PDFLoaderDrawingTest, ThePathIsAnsweredAsItWasGiven) {
    load(u"https://a.example/");
    const NSString path = folder.pathOf(".//page.pdf");
    EXPECT_EQ(exitStatusOf([&] { loader.savePDF(path); }), 0);
    EXPECT_EQ(result().objectForKey(NSString(u"path")), id(path));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "page.pdf"));
}

TEST_F(PDFLoaderDrawingTest, AFileThatIsNoPDFStaysAsItIsAndCountsAsSuccess) {
    load(u"https://a.example/");
    page().pdfToAnswer = NSData("no PDF");
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(folder.read("page.pdf"), "no PDF");
}

// Attributes

TEST_F(PDFLoaderDrawingTest, APageThatIsLostWhileItIsDrawnIsAFailedPrintAndTheLogSaysWhy) {
    load(u"https://a.example/");
    page().pdfToAnswer = {};
    client().pageLost(posixError(ENOMEM));
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(resultError().domain(), NSString(NSCocoaErrorDomain));
    EXPECT_EQ(resultError().code(), NSFileWriteUnknownError);
    EXPECT_THAT(log.lines(), Contains(AllOf(HasSubstr("didFailLoadWithError: "), HasSubstr("Code=12"))));
}

TEST_F(PDFLoaderDrawingTest, SetsFourAttributesAndKeepsTheOthers) {
    load(u"https://www.a.example/path?q=1#part", u"Tïtle (1)");
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(attribute(PDFDocumentCreatorAttribute), "Quillvane");
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "Tïtle (1)");
    EXPECT_EQ(attribute(PDFDocumentSubjectAttribute), "https://www.a.example/path?q=1#part");
    EXPECT_EQ(attribute(PDFDocumentAuthorAttribute), "a.example");
    EXPECT_EQ(attribute(PDFDocumentProducerAttribute), "Renderer 1");
}

TEST_F(PDFLoaderDrawingTest, APageWithoutTitleHasAnEmptyTitle) {
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "");
}

TEST_F(PDFLoaderDrawingTest, AnArchiveWithoutURLHasEmptySubjectAndAuthor) {
    time.inNextSlice([] { page().loadPage(u"http://stand-in.example/"); });
    loader.loadWebArchivePath_uid(archive({}), u"uid");
    page().pdfToAnswer = smallPDF();
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(attribute(PDFDocumentSubjectAttribute), "");
    EXPECT_EQ(attribute(PDFDocumentAuthorAttribute), "");
}

TEST_F(PDFLoaderDrawingTest, OnlyOnePrefixIsRemovedFromTheHost) {
    EXPECT_EQ(authorFor(u"https://www.www.a.example/"), "www.a.example");
}

TEST_F(PDFLoaderDrawingTest, APrefixInCapitalsStays) {
    EXPECT_EQ(authorFor(u"https://WWW.a.example/"), "WWW.a.example");
}

TEST_F(PDFLoaderDrawingTest, APrefixWithoutItsDotStays) {
    EXPECT_EQ(authorFor(u"https://www2.a.example/"), "www2.a.example");
}

TEST_F(PDFLoaderDrawingTest, APrefixInTheMiddleStays) {
    EXPECT_EQ(authorFor(u"https://a.www.example/"), "a.www.example");
}

TEST_F(PDFLoaderDrawingTest, AFileURLHasNoAuthor) {
    EXPECT_EQ(authorFor(u"file:///tmp/page.html"), "");
    EXPECT_EQ(attribute(PDFDocumentSubjectAttribute), "file:///tmp/page.html");
}

// Wishes

TEST_F(PDFLoaderDrawingTest, NobodyGetsMetadataOrAnAttachmentUnasked) {
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(page().versionsAsked, 0);
    const std::string file = folder.read("page.pdf");
    for (const char* word : {"/Metadata", "/EmbeddedFile", "/AF"}) EXPECT_THAT(file, Not(HasSubstr(word)));
}

TEST_F(PDFLoaderDrawingTest, MetadataSayWhatTheAttributesSay) {
    const Variable wish("WEB2PDF_XMP", "1");
    load(u"https://www.a.example/path?q=1&r=2", u"Tïtle <1>");
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(attribute(PDFDocumentTitleAttribute), "Tïtle <1>");
    EXPECT_THAT(inspect(folder.read("page.pdf"), "pdfinfo -meta @"),
                AllOf(HasSubstr(">Tïtle &lt;1&gt;<"), HasSubstr(">a.example<"),
                      HasSubstr("<dc:source>https://www.a.example/path?q=1&amp;r=2</dc:source>"),
                      HasSubstr("<web2pdf:Engine>Renderer/1.2.3</web2pdf:Engine>"),
                      HasSubstr("<xmp:CreatorTool>Quillvane</xmp:CreatorTool>")));
    EXPECT_THAT(folder.read("page.pdf"), Not(HasSubstr("/EmbeddedFile")));
}

TEST_F(PDFLoaderDrawingTest, TheAttachmentIsTheArchive) {
    const Variable wish("WEB2PDF_ATTACH_ARCHIVE", "1");
    load(u"https://a.example/");
    EXPECT_EQ(save(), 0);
    expectSuccess();
    EXPECT_EQ(inspect(folder.read("page.pdf"), "pdfdetach -savefile page.webarchive -o /dev/stdout @"),
              folder.read("page.webarchive"));
    EXPECT_EQ(page().versionsAsked, 0);
    EXPECT_THAT(folder.read("page.pdf"), Not(HasSubstr("/Metadata")));
}

TEST_F(PDFLoaderDrawingTest, WishesForAFileThatStaysAsItIsAreNoErrorButLogged) {
    const Variable wish("WEB2PDF_XMP", "1");
    const std::string damaged = makePDF({"<</Type /Catalog /Pages 2 0 R /Names <</EmbeddedFiles 4 0 R>>>>",
                                         "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                                         "<</Type /Page /Parent 2 0 R /MediaBox [0 0 9 9]>>",
                                         "<</Names [(b) <</#ype /Filespec>>]>>"});
    for (const std::string& contents : {std::string("no PDF"), damaged}) {
        load(u"https://a.example/");
        page().pdfToAnswer = NSData(contents);
        testing::internal::CaptureStderr();
        EXPECT_EQ(save(), 0);
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("nor does it have the metadata"));
        expectSuccess();
        EXPECT_EQ(folder.read("page.pdf"), contents);
    }
}

TEST_F(PDFLoaderDrawingTest, ThereIsNoHashOfAnArchiveThatIsCutShort) {
    const Variable wish("WEB2PDF_XMP", "1");
    EXPECT_EXIT(
        {
            allowMappedFiles();
            const NSString path = archive(u"https://a.example/" + std::u16string(2'000'000, u'x'));
            time.inNextSlice([] { page().loadPage(u"https://a.example/"); });
            loader.loadWebArchivePath_uid(path, u"uid");
            page().pdfToAnswer = smallPDF();
            std::filesystem::resize_file(folder.path() / "page.webarchive", 100'000);
            save();
            std::_Exit(resultError().code() == NSFileReadUnknownError ? 7 : 1);
        },
        testing::ExitedWithCode(7), "");
    EXPECT_EQ(folder.read("page.pdf"), smallPDF().bytes());
}

/// From here on, files can be as large as the PDF and the result, but not with metadata.
void limitFiles() {
    std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit limit = {2500, 2500};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(PDFLoaderDrawingTest, WishesThatCannotBeWrittenAreAnError) {
    const Variable wish("WEB2PDF_XMP", "1");
    load(u"https://a.example/");
    EXPECT_EXIT(
        {
            limitFiles();
            save();
            std::_Exit(resultError().code() == NSFileWriteUnknownError ? 7 : 1);
        },
        testing::ExitedWithCode(7), "nor does it have the metadata");
    EXPECT_EQ(folder.read("page.pdf"), smallPDF().bytes());
}

} // namespace
} // namespace qrv
