#include "Platform/Engine/StoredPDFPage.h"

#include "Platform/Foundation/NSRunLoop.h"
#include "Tests/Platform/Engine/RecordingClient.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string onePage() {
    return makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                    "<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]>>"});
}

class StoredPDFPageTest : public ::testing::Test {
protected:
    void load(const std::string& bytes, const std::string& url = "http://a/f.pdf") {
        page_->loadArchive(makeArchive({{url, bytes, "application/pdf"}}));
    }

    static void runLoop() {
        NSRunLoop::currentRunLoop().runUntil([] { return false; }, std::chrono::steady_clock::now() +
                                                                       std::chrono::milliseconds(20));
    }

    RecordingClient owner_;
    std::unique_ptr<Page> page_ = makeStoredPDFPage(owner_);
};

TEST_F(StoredPDFPageTest, FinishesLikeAnyPageWithoutATitle) {
    load(onePage());
    EXPECT_THAT(owner_.calls, IsEmpty()); // not inside the call
    runLoop();
    EXPECT_THAT(owner_.calls, ElementsAre("committed main http://a/f.pdf application/pdf", "finished main"));
    EXPECT_EQ(owner_.progress.back(), 1);
}

TEST_F(StoredPDFPageTest, ALoadThatIsWaitedForFinishesOnce) {
    load(onePage(), "about:blank");
    page_->waitForLoad();
    EXPECT_EQ(owner_.take().size(), 2u);
    page_->waitForLoad();
    runLoop();
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(StoredPDFPageTest, NoEngineHasDrawnIt) {
    load(onePage());
    page_->waitForLoad();
    EXPECT_TRUE(page_->engineVersion().isNil());
}

TEST_F(StoredPDFPageTest, NothingIsToldBeforeALoadAndAfterTheEnd) {
    page_->waitForLoad();
    load(onePage());
    page_.reset();
    runLoop();
    EXPECT_THAT(owner_.calls, IsEmpty());
}

TEST_F(StoredPDFPageTest, TheFileIsWhatItDraws) {
    load(onePage());
    runLoop();
    page_->setViewSize({612, 792});
    EXPECT_EQ(page_->documentSize(), (NSSize{612, 792}));
    EXPECT_EQ(page_->screenPDF().bytes(), onePage());
    EXPECT_EQ(page_->paginatedPDF({595, 842}, 36).bytes(), onePage());
    EXPECT_TRUE(page_->ownerElementName(mainFrame).isNil());
}

TEST_F(StoredPDFPageTest, AFileThatIsNoneDrawsNothing) {
    for (const char* bytes : {"", "<html>", "%PDF-1.4 and no more"}) {
        page_ = makeStoredPDFPage(owner_);
        load(bytes);
        page_->waitForLoad();
        EXPECT_EQ(owner_.take().back(), "finished main");
        EXPECT_TRUE(page_->screenPDF().isNil());
        EXPECT_TRUE(page_->paginatedPDF({595, 842}, 36).isNil());
    }
}

TEST(StoredPDFArchive, IsToldByTheTypeOfItsMainResource) {
    for (const char* type : {"application/pdf", "Application/PDF", "application/pdf; charset=binary",
                             "application/x-pdf", "text/pdf"}) {
        EXPECT_TRUE(isPDFArchive(makeArchive({{"http://a/", "x", type}}))) << type;
    }
    for (const char* type : {"text/html", "application/pdfx", "application/octet-stream"}) {
        EXPECT_FALSE(isPDFArchive(makeArchive({{"http://a/", "x", type}}))) << type;
    }
    EXPECT_FALSE(isPDFArchive({}));
}

} // namespace
} // namespace qrv::engine
