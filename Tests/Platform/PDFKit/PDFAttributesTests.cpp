#include "Platform/PDFKit/PDFAttributes.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"

#include <gmock/gmock.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace qrv {
namespace {

using testing::IsEmpty;

NSDictionary read(const std::string& information) {
    return attributesIn(QPDFObjectHandle::parse(information));
}

NSDictionary titled(const char16_t* title) {
    return {{NSString(u"Title"), NSString(title)}};
}

TEST(PDFAttributes, AreTextsNamesAndDates) {
    const NSDictionary attributes =
        read("<</Title (Old) /Trapped /False /Count 7 /CreationDate (D:20240229123456Z) /ModDate (soon)>>");
    EXPECT_EQ(attributes.count(), 4u);
    EXPECT_EQ(attributes.objectForKey(NSString(u"Title")), NSString(u"Old"));
    EXPECT_EQ(attributes.objectForKey(NSString(u"Trapped")), NSString(u"False"));
    EXPECT_TRUE(as<NSDate>(attributes.objectForKey(NSString(u"CreationDate"))));
    EXPECT_EQ(attributes.objectForKey(NSString(u"ModDate")), NSString(u"soon"));
}

TEST(PDFAttributes, AreNoneWhereTheDocumentInformationIsNone) {
    for (const char* information : {"[1 2]", "null", "(text)", "<<>>"})
        EXPECT_EQ(read(information), NSDictionary::dictionary()) << information;
}

TEST(PDFAttributes, ChangesAreWhatDiffers) {
    const auto changes = changesOfAttributes(
        {{NSString(u"Title"), NSString(u"Old")},
         {NSString(u"Author"), NSString(u"Same")},
         {NSString(u"Gone"), NSString(u"x")}},
        {{NSString(u"Title"), NSString(u"New")},
         {NSString(u"Author"), NSString(u"Same")},
         {NSString(u"Of a #kind"), NSDate::dateWithTimeIntervalSinceReferenceDate(1000)}});
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0].name, "/Gone");
    EXPECT_EQ(changes[0].kind, PDFAttributeChange::Kind::removal);
    EXPECT_EQ(changes[1].name + " " + syntaxOf(changes[1]), "/Title (New)");
    EXPECT_EQ(changes[2].name.substr(0, 6), "/Of#20");
    EXPECT_EQ(syntaxOf(changes[2]), "(D:20010101001640Z)");
}

TEST(PDFAttributes, EqualOnesAreNoChange) {
    EXPECT_THAT(changesOfAttributes(titled(u"Same"), titled(u"Same")), IsEmpty());
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
