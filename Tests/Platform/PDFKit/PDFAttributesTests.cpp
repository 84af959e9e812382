#include "Platform/PDFKit/PDFAttributes.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

NSData pdfWith(const std::string& information, const std::string& trailer = "/Info 4 0 R") {
    return NSData(
        makePDF({"<</Type /Catalog /Pages 2 0 R /Metadata 5 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                 "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Resources <<>>>>", information,
                 makeStream("<x:xmpmeta/>", "/Type /Metadata /Subtype /XML")},
                trailer));
}

NSDictionary titled(const char16_t* title) {
    return {{NSString(u"Title"), NSString(title)}};
}

/// What the file's attributes are after these changes.
NSDictionary changed(const NSData& pdf, const NSDictionary& wanted) {
    return attributesOfPDF(pdfByChangingAttributes(pdf, changesOfAttributes(attributesOfPDF(pdf), wanted)));
}

TEST(PDFAttributes, AreTextsNamesAndDates) {
    const NSDictionary attributes = attributesOfPDF(pdfWith(
        "<</Title (Old) /Trapped /False /Count 7 /CreationDate (D:20240229123456Z) /ModDate (soon)>>"));
    EXPECT_EQ(attributes.count(), 4u);
    EXPECT_EQ(attributes.objectForKey(NSString(u"Title")), NSString(u"Old"));
    EXPECT_EQ(attributes.objectForKey(NSString(u"Trapped")), NSString(u"False"));
    EXPECT_TRUE(as<NSDate>(attributes.objectForKey(NSString(u"CreationDate"))));
    EXPECT_EQ(attributes.objectForKey(NSString(u"ModDate")), NSString(u"soon"));
}

TEST(PDFAttributes, AreNoneWhereTheDocumentInformationIsNone) {
    for (const char* information : {"[1 2]", "null", "(text)", "4 0 R"})
        EXPECT_EQ(attributesOfPDF(pdfWith(information)), NSDictionary::dictionary()) << information;
}

TEST(PDFAttributes, AreNilForAFileThatCannotBeOpened) {
    EXPECT_TRUE(attributesOfPDF({}).isNil());
    EXPECT_TRUE(attributesOfPDF(NSData("%PDF-1.4")).isNil());
    EXPECT_TRUE(pdfByChangingAttributes(NSData("%PDF-1.4"), {}).isNil());
}

TEST(PDFAttributes, Change) {
    const NSData pdf = pdfWith("<</Title (Old) /Producer (Maker)>>");
    const NSDictionary wanted{{NSString(u"Title"), NSString(u"New")},
                              {NSString(u"ModDate"), NSDate::dateWithTimeIntervalSinceReferenceDate(1000)}};
    EXPECT_EQ(changed(pdf, wanted), wanted);
    EXPECT_EQ(changed(pdfWith("[1 2]"), wanted), wanted);
    EXPECT_EQ(changed(pdfWith("null", ""), wanted), wanted);
}

TEST(PDFAttributes, EqualOnesAreNoChange) {
    EXPECT_THAT(changesOfAttributes(titled(u"Same"), titled(u"Same")), IsEmpty());
}

TEST(PDFAttributes, OnlyAChangeRemovesTheMetadata) {
    const NSData pdf = pdfWith("<</Title (Old)>>");
    EXPECT_THAT(std::string(pdfByChangingAttributes(pdf, {}).bytes()), HasSubstr("/Metadata"));
    const auto changes = changesOfAttributes(attributesOfPDF(pdf), titled(u"New"));
    EXPECT_THAT(std::string(pdfByChangingAttributes(pdf, changes).bytes()), Not(HasSubstr("/Metadata")));
}

TEST(PDFAttributes, OtherKindsOfValuesAndKeysRaise) {
    const NSNumber number = NSNumber::numberWithInteger(1);
    EXPECT_THROW(changesOfAttributes({}, {{NSString(u"Title"), number}}), NSException);
    EXPECT_THROW(changesOfAttributes({}, {{number, NSString(u"x")}}), NSException);
    const NSDate tooLate = NSDate::dateWithTimeIntervalSinceReferenceDate(1e12);
    EXPECT_THROW(changesOfAttributes({}, {{NSString(u"ModDate"), tooLate}}), NSException);
}

} // namespace
} // namespace qrv
