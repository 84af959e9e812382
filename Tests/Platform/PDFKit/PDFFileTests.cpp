#include "Platform/PDFKit/PDFFile.h"

#include "Platform/PDFKit/PDFWriting.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using testing::HasSubstr;

/// A file that asks for a password.
std::string locked() {
    const std::string key(32, 'k');
    return makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[]/Count 0>>",
                    "<</Filter/Standard/V 1/R 2/P -4/O(" + key + ")/U(" + key + ")>>"},
                   "/Encrypt 3 0 R /ID[(0123456789abcdef)(0123456789abcdef)]");
}

std::string withDamagedTable() {
    const std::string file = makeOnePage();
    return file.substr(0, file.find("startxref")) + "startxref\n7\n%%EOF\n";
}

bool isOpened(const std::string& bytes) {
    return openPDF(NSData(bytes)) != nullptr;
}

TEST(OpenPDF, OpensAFileThatIsWhole) {
    EXPECT_TRUE(isOpened(makeOnePage()));
}

TEST(OpenPDF, RefusesDamageThatReadersMend) {
    EXPECT_FALSE(isOpened(withDamagedTable()));
}

TEST(OpenPDF, RefusesDamageThatTheLibraryOnlyWarnsOf) {
    std::string file = makeOnePage();
    file.replace(file.find("/Type/Pages"), 11, "/Type/Wrong");
    EXPECT_FALSE(isOpened(file));
}

TEST(OpenPDF, RefusesEncryptedFiles) {
    EXPECT_FALSE(isOpened(locked()));
    const TemporaryFolder folder;
    const std::string plain = folder.write("plain.pdf", makeOnePage()).utf8();
    outputOf("qpdf --encrypt '' owner 256 -- '" + plain + "' '" + folder.pathOf("open.pdf").utf8() + "'");
    ASSERT_THAT(folder.read("open.pdf"), HasSubstr("/Encrypt"));
    EXPECT_FALSE(isOpened(folder.read("open.pdf"))); // though it asks for no password
}

TEST(OpenPDF, RefusesWhatIsNoPDF) {
    EXPECT_FALSE(openPDF({}));
    for (const char* bytes : {"", "<html>", "%PDF-1.7", "%PDF-1.7\n1 0 obj\n<<"})
        EXPECT_FALSE(isOpened(bytes)) << bytes;
}

TEST(OpenPDF, TheDocumentKeepsItsBytesAlive) {
    std::shared_ptr<QPDF> document;
    {
        const NSData bytes(makeOnePage({makeStream("contents that are read late"), "(other)"}));
        document = openPDF(bytes);
    }
    ASSERT_TRUE(document);
    EXPECT_THAT(
        inspect(std::string(serializePDF(*document).bytes()), "qpdf --qdf --stream-data=uncompress @ -"),
        HasSubstr("contents that are read late"));
}

bool isReadable(const std::string& bytes) {
    return isReadablePDF(NSData(bytes));
}

TEST(ReadablePDF, AFileWithPagesIsReadable) {
    EXPECT_TRUE(isReadable(makeOnePage()));
}

TEST(ReadablePDF, DamageThatReadersMendIsNoObstacle) {
    EXPECT_TRUE(isReadable(withDamagedTable()));
    EXPECT_TRUE(isReadable("bytes before it\n" + makeOnePage()));
}

TEST(ReadablePDF, AFileThatAsksForAPasswordIsReadable) {
    EXPECT_TRUE(isReadable(locked()));
}

TEST(ReadablePDF, AFileWithoutPagesIsNot) {
    EXPECT_FALSE(isReadable(makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[]/Count 0>>"})));
}

TEST(ReadablePDF, PagesWithoutEndAreNot) {
    EXPECT_FALSE(isReadable(makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                     "<</Type/Pages/Parent 2 0 R/Kids[2 0 R]/Count 1>>"})));
}

TEST(ReadablePDF, WhatIsNoPDFIsNot) {
    EXPECT_FALSE(isReadablePDF({}));
    for (const char* bytes : {"", "<html>", "%PDF-1.7", "%PDF-1.7\n1 0 obj\n<<"})
        EXPECT_FALSE(isReadable(bytes)) << bytes;
    EXPECT_FALSE(isReadable(makeOnePage().substr(0, 30)));
}

} // namespace
} // namespace qrv
