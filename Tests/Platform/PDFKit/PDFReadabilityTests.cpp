#include "Platform/PDFKit/PDFReadability.h"

#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

std::string onePage() {
    return makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                    "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]>>"});
}

bool isReadable(const std::string& bytes) {
    return isReadablePDF(NSData(bytes));
}

TEST(PDFReadability, AFileWithPagesIsReadable) {
    EXPECT_TRUE(isReadable(onePage()));
}

TEST(PDFReadability, DamageThatReadersMendIsNoObstacle) {
    const std::string file = onePage();
    EXPECT_TRUE(isReadable(file.substr(0, file.find("startxref")) + "startxref\n7\n%%EOF\n"));
    EXPECT_TRUE(isReadable("bytes before it\n" + file));
}

TEST(PDFReadability, AFileThatAsksForAPasswordIsReadable) {
    const std::string key(32, 'k');
    EXPECT_TRUE(isReadable(makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[]/Count 0>>",
                                    "<</Filter/Standard/V 1/R 2/P -4/O(" + key + ")/U(" + key + ")>>"},
                                   "/Encrypt 3 0 R /ID[(0123456789abcdef)(0123456789abcdef)]")));
}

TEST(PDFReadability, AFileWithoutPagesIsNot) {
    EXPECT_FALSE(isReadable(makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[]/Count 0>>"})));
}

TEST(PDFReadability, PagesWithoutEndAreNot) {
    EXPECT_FALSE(isReadable(makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                     "<</Type/Pages/Parent 2 0 R/Kids[2 0 R]/Count 1>>"})));
}

TEST(PDFReadability, WhatIsNoPDFIsNot) {
    EXPECT_FALSE(isReadablePDF({}));
    for (const char* bytes : {"", "<html>", "%PDF-1.7", "%PDF-1.7\n1 0 obj\n<<"})
        EXPECT_FALSE(isReadable(bytes)) << bytes;
    EXPECT_FALSE(isReadable(onePage().substr(0, 30)));
}

} // namespace
} // namespace qrv
