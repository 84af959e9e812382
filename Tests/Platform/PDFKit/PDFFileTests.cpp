#include "Platform/PDFKit/PDFFile.h"

#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A page and, from the fourth on, more objects.
std::string onePage(const std::vector<std::string>& others = {}) {
    std::vector<std::string> objects{"<</Type/Catalog/Pages 2 0 R/Others[4 0 R 5 0 R]>>",
                                     "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                     "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Resources<<>>>>"};
    objects.insert(objects.end(), others.begin(), others.end());
    return makePDF(objects);
}

/// A file that asks for a password.
std::string locked() {
    const std::string key(32, 'k');
    return makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[]/Count 0>>",
                    "<</Filter/Standard/V 1/R 2/P -4/O(" + key + ")/U(" + key + ")>>"},
                   "/Encrypt 3 0 R /ID[(0123456789abcdef)(0123456789abcdef)]");
}

std::string withDamagedTable() {
    const std::string file = onePage();
    return file.substr(0, file.find("startxref")) + "startxref\n7\n%%EOF\n";
}

bool isOpened(const std::string& bytes) {
    return openPDF(NSData(bytes)) != nullptr;
}

/// What the file becomes when it is opened and written.
std::string rewritten(const std::string& bytes) {
    const auto document = openPDF(NSData(bytes));
    return document ? std::string(serializePDF(*document).bytes()) : "not opened";
}

/// What a program says of a file; its place in the command is marked by an "@".
std::string inspect(const std::string& bytes, std::string command) {
    const TemporaryFolder folder;
    command.replace(command.find('@'), 1, "'" + folder.write("out.pdf", bytes).utf8() + "'");
    return outputOf(command);
}

TEST(OpenPDF, OpensAFileThatIsWhole) {
    EXPECT_TRUE(isOpened(onePage()));
}

TEST(OpenPDF, RefusesDamageThatReadersMend) {
    EXPECT_FALSE(isOpened(withDamagedTable()));
}

TEST(OpenPDF, RefusesDamageThatTheLibraryOnlyWarnsOf) {
    std::string file = onePage();
    file.replace(file.find("/Type/Pages"), 11, "/Type/Wrong");
    EXPECT_FALSE(isOpened(file));
}

TEST(OpenPDF, RefusesEncryptedFiles) {
    EXPECT_FALSE(isOpened(locked()));
    const TemporaryFolder folder;
    const std::string plain = folder.write("plain.pdf", onePage()).utf8();
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
        const NSData bytes(onePage({makeStream("contents that are read late"), "(other)"}));
        document = openPDF(bytes);
    }
    ASSERT_TRUE(document);
    EXPECT_THAT(
        inspect(std::string(serializePDF(*document).bytes()), "qpdf --qdf --stream-data=uncompress @ -"),
        HasSubstr("contents that are read late"));
}

TEST(SerializePDF, WritesAFileThatReadersFindNoFaultWith) {
    const std::string file = rewritten(onePage());
    EXPECT_THAT(file, StartsWith("%PDF-1."));
    EXPECT_THAT(inspect(file, "pdfinfo @"), HasSubstr("Pages:           1\n"));
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
}

TEST(SerializePDF, Compresses) {
    const std::string text(100'000, 'x');
    const std::string file = rewritten(onePage({makeStream(text), "(in an object stream)"}));
    EXPECT_LT(file.size(), 2000u);
    EXPECT_THAT(file, HasSubstr("/ObjStm"));
    EXPECT_THAT(file, Not(HasSubstr("/Linearized")));
    EXPECT_THAT(inspect(file, "qpdf --qdf --stream-data=uncompress --object-streams=disable @ -"),
                HasSubstr(text));
}

TEST(SerializePDF, WritesTheSameBytesForTheSameDocument) {
    EXPECT_EQ(rewritten(onePage()), rewritten(onePage()));
    EXPECT_NE(rewritten(onePage()), rewritten(onePage({"(other)"})));
}

TEST(SerializePDF, LeavesEmptyStreamsUncompressed) {
    const std::string file = rewritten(onePage({makeStream(""), makeStream("full")}));
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
    EXPECT_THAT(file, HasSubstr("<< /Length 0 >>"));
}

TEST(SerializePDF, GivesNothingForADamagedPart) {
    std::string file = onePage({makeStream("contents"), "(other)"});
    file.replace(file.find("/Length 8"), 9, "/Length 3");
    ASSERT_TRUE(isOpened(file)); // nobody has looked at the part yet
    EXPECT_EQ(rewritten(file), "");
}

bool isReadable(const std::string& bytes) {
    return isReadablePDF(NSData(bytes));
}

TEST(ReadablePDF, AFileWithPagesIsReadable) {
    EXPECT_TRUE(isReadable(onePage()));
}

TEST(ReadablePDF, DamageThatReadersMendIsNoObstacle) {
    EXPECT_TRUE(isReadable(withDamagedTable()));
    EXPECT_TRUE(isReadable("bytes before it\n" + onePage()));
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
    EXPECT_FALSE(isReadable(onePage().substr(0, 30)));
}

} // namespace
} // namespace qrv
