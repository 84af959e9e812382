#include "Platform/PDFKit/PDFWriting.h"

#include "Platform/PDFKit/PDFFile.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>
#include <qpdf/QPDF.hh>

namespace qrv {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// What the file becomes when it is opened and written.
std::string rewritten(const std::string& bytes) {
    const auto document = openPDF(NSData(bytes));
    return document ? std::string(serializePDF(*document).bytes()) : "not opened";
}

TEST(SerializePDF, WritesAFileThatReadersFindNoFaultWith) {
    const std::string file = rewritten(makeOnePage());
    EXPECT_THAT(file, StartsWith("%PDF-1."));
    EXPECT_THAT(inspect(file, "pdfinfo @"), HasSubstr("Pages:           1\n"));
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
}

TEST(SerializePDF, Compresses) {
    const std::string text(100'000, 'x');
    const std::string file = rewritten(makeOnePage({makeStream(text), "(in an object stream)"}));
    EXPECT_LT(file.size(), 2000u);
    EXPECT_THAT(file, HasSubstr("/ObjStm"));
    EXPECT_THAT(file, Not(HasSubstr("/Linearized")));
    EXPECT_THAT(inspect(file, "qpdf --qdf --stream-data=uncompress --object-streams=disable @ -"),
                HasSubstr(text));
}

TEST(SerializePDF, WritesTheSameBytesForTheSameDocument) {
    EXPECT_EQ(rewritten(makeOnePage()), rewritten(makeOnePage()));
    EXPECT_NE(rewritten(makeOnePage()), rewritten(makeOnePage({"(other)"})));
}

TEST(SerializePDF, LeavesEmptyStreamsUncompressed) {
    const std::string file = rewritten(makeOnePage({makeStream(""), makeStream("full")}));
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
    EXPECT_THAT(file, HasSubstr("<< /Length 0 >>"));
}

TEST(SerializePDF, GivesNothingForADamagedPart) {
    std::string file = makeOnePage({makeStream("contents"), "(other)"});
    file.replace(file.find("/Length 8"), 9, "/Length 3");
    ASSERT_TRUE(openPDF(NSData(file))); // nobody has looked at the part yet
    EXPECT_EQ(rewritten(file), "");
}

TEST(SerializePDF, StreamsKeepTheirData) {
    const std::string file =
        rewritten(makeOnePage({makeStream("neither read nor packed", "/Filter /ASCII85Decode"), "(other)"}));
    EXPECT_THAT(file, HasSubstr("stream\nneither read nor packed\nendstream"));
}

TEST(SerializePDF, KeepsNumbersAndGenerations) {
    std::string file = makeOnePage({"(first)", "(second)"});
    file.replace(file.find("[4 0 R 5 0 R]"), 13, "[4 7 R 5 0 R]");
    file.replace(file.find("4 0 obj"), 7, "4 7 obj");
    const std::size_t row = file.find("0000000000 65535 f ") + 4 * 20;
    file.replace(row + 11, 5, "00007");
    const std::string written = rewritten(file);
    EXPECT_EQ(inspect(written, "qpdf --show-object=4,7 @"), "(first)\n");
    EXPECT_EQ(inspect(written, "qpdf --show-object=5 @"), "(second)\n");
}

TEST(SerializePDF, ReferencesToNothingTakeNoPlace) {
    const auto document = openPDF(NSData(makeOnePage()));
    ASSERT_TRUE(document);
    document->getRoot().replaceKey(
        "/Dangling", QPDFObjectHandle::parse(document.get(), "[1 1 R 2 3 R -5 0 R 0 0 R 99 0 R]"));
    EXPECT_TRUE(openPDF(serializePDF(*document)));
}

TEST(SerializePDF, LeavesOutWhatNothingRefersTo) {
    const std::string file = rewritten(makeOnePage({"<</Next 7 0 R>>", "(5)", "(6)", "(7)"}));
    EXPECT_EQ(inspect(file, "qpdf --show-object=6 @"), "null\n");
    EXPECT_EQ(inspect(file, "qpdf --show-object=7 @"), "(7)\n");
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
}

TEST(SerializePDF, WritesMoreObjectsThanAnObjectStreamTakes) {
    std::vector<std::string> others{"[", "(other)"};
    for (int number = 6; number < 1006; ++number) {
        others.front() += std::to_string(number) + " 0 R ";
        others.push_back("(object " + std::to_string(number) + ")");
    }
    others.front() += "]";
    const std::string file = rewritten(makeOnePage(others));
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
    for (const int number : {6, 500, 1005}) {
        EXPECT_EQ(inspect(file, "qpdf --show-object=" + std::to_string(number) + " @"),
                  "(object " + std::to_string(number) + ")\n");
    }
}

TEST(SerializePDF, KeepsTheDocumentsFirstIdentifier) {
    const std::string file =
        rewritten(makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                           "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>"},
                          "/ID[(0123456789abcdef)(fedcba9876543210)]"));
    EXPECT_THAT(file, HasSubstr("/ID [ (0123456789abcdef) "));
    EXPECT_THAT(file, Not(HasSubstr("fedcba9876543210")));
}

TEST(SerializePDF, RefusesNumbersThatReadersDoNotTake) {
    const auto document = openPDF(NSData(makeOnePage()));
    document->replaceObject(9'000'000, 0, QPDFObjectHandle::newInteger(1));
    document->getRoot().replaceKey("/Far", document->getObject(9'000'000, 0));
    EXPECT_TRUE(serializePDF(*document).isNil());
}

TEST(SerializePDF, CopiesUnreadObjectsAndWhatTheyReferTo) {
    const NSData bytes(
        makeOnePage({"<</Kind /Left   /Next 6 0 R>>", "(other)", "<</Kind /Left /Next 7 0 R>>", "(last)"}));
    const auto document = openPDF(bytes);
    const UnreadObjects unread(*document, bytes, "<</Kind /Left", {});
    document->getObject(7, 0); // still found
    const std::string file(serializePDF(*document, unread).bytes());
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
    EXPECT_EQ(inspect(file, "qpdf --show-object=4 @"), "<< /Kind /Left /Next 6 0 R >>\n");
    EXPECT_EQ(inspect(file, "qpdf --show-object=7 @"), "(last)\n");
}

} // namespace
} // namespace qrv
