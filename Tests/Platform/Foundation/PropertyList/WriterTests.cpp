#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/NSURL.h"
#include "Tests/Platform/Foundation/PropertyList/CanonicalText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace std::string_literals;

namespace qrv {

namespace {

NSData written(const id& plist, NSPropertyListFormat format, NSString* problem = nullptr) {
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(plist, format, problem);
}

std::string xml(const id& plist) {
    return std::string(written(plist, NSPropertyListXMLFormat_v1_0).bytes());
}

std::string binary(const id& plist) {
    return std::string(written(plist, NSPropertyListBinaryFormat_v1_0).bytes());
}

std::string throughXML(const id& plist) {
    return canonicalText(NSPropertyListSerialization::propertyListWithData(NSData(xml(plist))));
}

std::string throughBinary(const id& plist) {
    return canonicalText(NSPropertyListSerialization::propertyListWithData(NSData(binary(plist))));
}

std::string document(const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           content + "</plist>\n";
}

id nested(int depth) {
    id plist = NSArray::array();
    for (int i = 1; i < depth; ++i) plist = NSArray({plist});
    return plist;
}

NSNumber number(double value) {
    return NSNumber::numberWithDouble(value);
}

NSDate date(double seconds) {
    return NSDate::dateWithTimeIntervalSinceReferenceDate(seconds);
}

} // namespace

TEST(XMLWriter, KeysStandInTheDictionarysOrder) {
    EXPECT_EQ(xml(NSDictionary{{NSString(u"succeeded"), NSNumber::numberWithBool(true)},
                               {NSString(u"path"), NSString(u"/a & <b>")}}),
              document("<dict>\n\t<key>succeeded</key>\n\t<true/>\n\t<key>path</key>\n\t<string>/a &amp; "
                       "&lt;b&gt;</string>\n</dict>\n"));
}

TEST(XMLWriter, NestedContainersAreIndentedByTabs) {
    EXPECT_EQ(
        xml(NSArray(
            {NSDictionary{{NSString(u"k"), NSArray({NSNumber::numberWithInteger(-1), NSArray::array()})}},
             NSDictionary::dictionary()})),
        document(
            "<array>\n\t<dict>\n\t\t<key>k</key>\n\t\t<array>\n\t\t\t<integer>-1</integer>\n\t\t\t<array/>\n"
            "\t\t</array>\n\t</dict>\n\t<dict/>\n</array>\n"));
}

TEST(XMLWriter, DataStandsInLinesOfSeventySixLetters) {
    EXPECT_EQ(
        xml(NSData(std::string(58, 'x'))),
        document(
            "<data>\neHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4\neA==\n"
            "</data>\n"));
    EXPECT_EQ(xml(NSData::data()), document("<data>\n</data>\n"));
}

TEST(XMLWriter, RealsReadBackTheSameBits) {
    for (const double value : {0.0, -0.0, 0.1, 1.0 / 3, 1e22, 1e-5, 5e-324,
                               std::numeric_limits<double>::max(), 123456789.125, HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(throughXML(number(value)), canonicalText(number(value)));
    }
    EXPECT_EQ(xml(number(std::nan(""))), document("<real>nan</real>\n"));
}

TEST(XMLWriter, DatesReadBackToTheSecond) {
    for (const double seconds : {0.0, -1.0, 86399.0, 700000000.0, -63113904000.0, 252423993599.0}) {
        EXPECT_EQ(throughXML(date(seconds)), canonicalText(date(seconds)));
    }
    EXPECT_EQ(xml(date(0.9)), document("<date>2001-01-01T00:00:00Z</date>\n"));
    EXPECT_EQ(xml(date(-0.1)), document("<date>2000-12-31T23:59:59Z</date>\n"));
    EXPECT_EQ(xml(date(-63113904000.0)), document("<date>0001-01-01T00:00:00Z</date>\n"));
}

TEST(XMLWriter, TextReadsBackTheSame) {
    const NSString text = u"a\r\nb\tc \"'é中\U0001F600\u0085]]>";
    EXPECT_EQ(throughXML(text), canonicalText(text));
    EXPECT_EQ(throughXML(NSDictionary{{text, text}}), canonicalText(NSDictionary{{text, text}}));
}

TEST(XMLWriter, IntegersOfTheWholeRangeReadBack) {
    for (const long long value :
         {0LL, -1LL, std::numeric_limits<long long>::max(), std::numeric_limits<long long>::min()}) {
        EXPECT_EQ(throughXML(NSNumber::numberWithInteger(value)), "i" + std::to_string(value));
    }
    EXPECT_EQ(throughXML(NSNumber::numberWithUnsignedInteger(~0ULL)), "i18446744073709551615");
}

TEST(XMLWriter, WhatXMLCannotHoldGivesNilAndAReason) {
    const id unfit[] = {id(),
                        NSNull::null(),
                        NSURL::URLWithString(u"http://a/"),
                        NSKeyedArchiveUID::uidWithValue(1),
                        NSString(u"\u0001"),
                        NSString(std::u16string(1, u'\0')),
                        NSString(u"\uFFFE"),
                        NSString(u"\uFFFF"),
                        NSString(std::u16string(1, char16_t{0xD800})),
                        NSString(std::u16string{u'a', char16_t{0xDC00}}),
                        date(std::nan("")),
                        date(HUGE_VAL),
                        date(252423993600.0),
                        date(-63113904001.0),
                        NSArray({NSString(u"fit"), NSString(u"\u0001")}),
                        NSDictionary{{NSString(u"\u0001"), NSString(u"fit")}},
                        NSDictionary{{NSNumber::numberWithInteger(1), NSString(u"fit")}},
                        nested(513)};
    for (const id& plist : unfit) {
        NSString problem;
        EXPECT_FALSE(written(plist, NSPropertyListXMLFormat_v1_0, &problem)) << plist.description().utf8();
        EXPECT_GT(problem.length(), 0u);
    }
}

TEST(XMLWriter, ContainersNestedAsDeepAsAllowedReadBack) {
    EXPECT_EQ(throughXML(nested(512)), canonicalText(nested(512)));
}

TEST(BinaryWriter, EveryKindReadsBackTheSame) {
    const NSArray plist({NSString(u""),
                         NSString(u"ascii"),
                         NSString(u"é中\U0001F600"),
                         NSString(std::u16string{char16_t{0xD800}, u'\0'}),
                         NSString(std::u16string(70000, u'x')),
                         NSData::data(),
                         NSData(std::string(300, '\xFF')),
                         number(0.1),
                         date(0.25),
                         date(-1e18),
                         NSNumber::numberWithBool(true),
                         NSNumber::numberWithBool(false),
                         NSNumber::numberWithInteger(255),
                         NSNumber::numberWithInteger(256),
                         NSNumber::numberWithInteger(65536),
                         NSNumber::numberWithInteger(4294967296),
                         NSNumber::numberWithInteger(-1),
                         NSNumber::numberWithUnsignedInteger(~0ULL),
                         NSKeyedArchiveUID::uidWithValue(0),
                         NSKeyedArchiveUID::uidWithValue(~0ULL),
                         NSArray::array(),
                         NSDictionary{{NSString(u"k"), NSDictionary::dictionary()}}});
    EXPECT_EQ(throughBinary(plist), canonicalText(plist));
}

TEST(BinaryWriter, AListOfOneObjectIsWrittenToTheByte) {
    EXPECT_EQ(binary(NSString(u"a")), "bplist00\x51"
                                      "a\x08"s +
                                          std::string(6, '\0') + "\x01\x01"s + std::string(7, '\0') +
                                          "\x01"s + std::string(8, '\0') + std::string(7, '\0') + "\x0A"s);
}

TEST(BinaryWriter, EqualStringsAndSharedObjectsAreWrittenOnce) {
    const NSData data(std::string(1000, 'x'));
    const std::size_t once = binary(NSArray({data, NSString(u"long enough")})).size();
    const std::size_t twice =
        binary(NSArray({data, NSString(u"long enough"), data, NSString(u"long enough")})).size();
    EXPECT_EQ(twice, once + 2);
}

TEST(BinaryWriter, SharedPairsFortyLevelsDeepStaySmall) {
    id level = NSString(u"bottom");
    for (int i = 0; i < 40; ++i) level = NSArray({level, level});
    EXPECT_LT(binary(level).size(), 300u);
    NSString problem;
    EXPECT_TRUE(NSPropertyListSerialization::propertyListWithData(NSData(binary(level))));
}

TEST(BinaryWriter, ManyObjectsTakeWiderReferences) {
    std::vector<id> elements;
    for (int i = 0; i < 70000; ++i) elements.push_back(NSNumber::numberWithInteger(i));
    const NSArray plist(std::move(elements));
    EXPECT_EQ(NSPropertyListSerialization::propertyListWithData(NSData(binary(plist))), plist);
}

TEST(BinaryWriter, WhatNoListCanHoldGivesNilAndAReason) {
    id steps = NSArray::array();
    std::vector<id> known = {steps};
    for (int i = 0; i < 600; ++i) known.push_back(steps = NSArray({steps}));
    const id unfit[] = {id(),
                        NSNull::null(),
                        NSURL::URLWithString(u"http://a/"),
                        NSArray({NSNull::null()}),
                        NSDictionary{{NSNumber::numberWithInteger(1), NSString(u"fit")}},
                        nested(513),
                        NSArray(known)};
    for (const id& plist : unfit) {
        NSString problem;
        EXPECT_FALSE(written(plist, NSPropertyListBinaryFormat_v1_0, &problem));
        EXPECT_GT(problem.length(), 0u);
    }
    EXPECT_EQ(throughBinary(nested(512)), canonicalText(nested(512)));
}

TEST(PropertyListWriter, AnUnknownFormatGivesNil) {
    NSString problem;
    EXPECT_FALSE(written(NSString(u"a"), static_cast<NSPropertyListFormat>(1), &problem));
    EXPECT_EQ(problem, NSString(u"unknown format"));
}

} // namespace qrv
