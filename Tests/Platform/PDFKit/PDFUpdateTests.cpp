#include "Platform/PDFKit/PDFUpdate.h"

#include "Platform/PDFKit/PDFFile.h"
#include "Platform/PDFKit/PDFWriting.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>
#include <qpdf/QPDF.hh>

namespace qrv {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const NSDictionary wanted{{NSString(u"Title"), NSString(u"New")},
                          {NSString(u"Author"), NSString(u"Somebody")}};

std::string withInformation(const std::string& information, const std::string& trailer = "/Info 4 0 R") {
    return makePDF({"<</Type /Catalog /Pages 2 0 R /Metadata 5 0 R /Lang (de)>>",
                    "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                    "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Resources <<>>>>", information,
                    makeStream("<x:xmpmeta/>", "/Type /Metadata /Subtype /XML")},
                   trailer);
}

PDFEnding endingOf(const std::string& file) {
    const NSData bytes(file);
    const auto document = openPDF(bytes);
    return document ? endingOf(*document, bytes) : PDFEnding();
}

/// The file after it has been given these attributes, by way of a list as a child hands it out.
std::string updated(const std::string& file, const NSDictionary& attributes = wanted) {
    const auto ending = endingFromList(listFromEnding(endingOf(file)));
    if (!ending) return "no ending";
    return file + updateOfPDF(*ending, file.size(), changesOfAttributes(ending->attributes, attributes));
}

class Updated : public testing::TestWithParam<std::string> {};

TEST_P(Updated, HasTheAttributesAndNoFault) {
    const std::string file = updated(GetParam());
    EXPECT_THAT(file, StartsWith(GetParam()));
    EXPECT_EQ(endingOf(file).attributes, wanted);
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
    for (const char* program : {"pdfinfo @", "mutool info @"}) {
        EXPECT_THAT(inspect(file, program), HasSubstr("Somebody")) << program;
        EXPECT_THAT(inspect(file, program), Not(HasSubstr("rror"))) << program;
    }
}

TEST_P(Updated, CanBeUpdatedAgain) {
    const NSDictionary other{{NSString(u"Title"), NSString(u"Other")}};
    const std::string file = updated(updated(GetParam()), other);
    EXPECT_EQ(endingOf(file).attributes, other);
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
}

std::string withTableInAStream() {
    const NSData bytes(withInformation("<</Title (Old)>>"));
    return std::string(serializePDF(*openPDF(bytes)).bytes());
}

std::string ofALaterGeneration() {
    std::string file = withInformation("<</Title (Old)>>", "/Info 4 7 R");
    file.replace(file.find("4 0 obj"), 7, "4 7 obj");
    file.replace(file.find("0000000000 65535 f ") + 4 * 20 + 11, 5, "00007");
    return file;
}

INSTANTIATE_TEST_SUITE_P(PDFUpdate, Updated,
                         testing::Values(withInformation("<</Title (Old)>>"), withInformation("[1 2]"),
                                         withInformation("null", ""), withInformation("null", "/Info <<>>"),
                                         withTableInAStream(), ofALaterGeneration(),

                                         withInformation("<</Title (Old)>>") + "and after it"));

TEST(PDFUpdate, IsNothingWithoutChanges) {
    const std::string file = withInformation("<</Title (Old)>>");
    EXPECT_EQ(updated(file, endingOf(file).attributes), file);
}

TEST(PDFUpdate, CountsFromTheHeader) {
    const std::string file = updated("bytes before it\n" + withInformation("<</Title (Old)>>"));
    EXPECT_EQ(endingOf(file).attributes, wanted);
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
}

TEST(PDFUpdate, KeepsEntriesInTheirForm) {
    const std::string file =
        updated(withInformation("<</Count 7 /Trapped /False /A#20name <41> /Title (Old)>>"),
                {{NSString(u"Trapped"), NSString(u"False")}, {NSString(u"A name"), NSString(u"A")}});
    EXPECT_EQ(inspect(file, "qpdf --show-object=4 @"), "<< /A#20name (A) /Count 7 /Trapped /False >>\n");
}

TEST(PDFUpdate, TheCatalogLosesItsMetadataAndNoMore) {
    const std::string file = updated(withInformation("<</Title (Old)>>"));
    EXPECT_EQ(inspect(file, "qpdf --show-object=1 @"), "<< /Lang (de) /Pages 2 0 R /Type /Catalog >>\n");
}

TEST(PDFUpdate, TheTrailerKeepsItsOtherEntries) {
    const std::string file = updated(withInformation("null", "/ID [<41> <42>] /Mine 7"));
    const std::string trailer = inspect(file, "qpdf --show-object=trailer @");
    EXPECT_THAT(trailer, HasSubstr("/ID [ (A) (B) ]"));
    EXPECT_THAT(trailer, HasSubstr("/Mine 7"));
}

TEST(PDFUpdate, TheEndingOfWhatIsWrittenIsThatOfWhatIsRead) {
    const NSData source(withInformation("<</Title (Old)>>"));
    PDFEnding told;
    const NSData written = serializePDF(*openPDF(source), {}, &told);
    EXPECT_EQ(listFromEnding(told), listFromEnding(endingOf(std::string(written.bytes()))));
}

TEST(PDFUpdate, OtherListsAreNoEnding) {
    EXPECT_FALSE(endingFromList({}));
    EXPECT_FALSE(endingFromList(NSData("<plist><dict/></plist>")));
    EXPECT_FALSE(endingFromList(NSData("<plist><string>x</string></plist>")));
}

} // namespace
} // namespace qrv
