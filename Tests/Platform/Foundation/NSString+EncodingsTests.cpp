#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/Unicode.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

struct Encoded {
    unsigned long encoding;
    std::u16string text;
    std::string bytes;
};

void PrintTo(const Encoded& text, std::ostream* out) {
    *out << text.encoding << " " << testing::PrintToString(text.text);
}

class Encodings : public testing::TestWithParam<Encoded> {};

TEST_P(Encodings, RoundTrip) {
    const Encoded& e = GetParam();
    EXPECT_EQ(NSString(e.text).dataUsingEncoding(e.encoding), NSData(e.bytes));
    EXPECT_EQ(NSString::initWithData_encoding(NSData(e.bytes), e.encoding), NSString(e.text));
}

INSTANTIATE_TEST_SUITE_P(
    Table, Encodings,
    testing::Values(Encoded{1, u"az", "az"}, Encoded{4, u"é😀", "\xC3\xA9\xF0\x9F\x98\x80"},
                    Encoded{5, u"é", "\xE9"}, Encoded{7, u"a\\é€\n", "a\\\\\\351\\u20ac\n"},
                    Encoded{3, u"日", "\xC6\xFC"}, Encoded{8, u"日", "\x93\xFA"}, Encoded{9, u"ł", "\xB3"},
                    Encoded{11, u"Ж", "\xC6"}, Encoded{12, u"€", "\x80"}, Encoded{13, u"α", "\xE1"},
                    Encoded{14, u"ğ", "\xF0"}, Encoded{15, u"ł", "\xB3"},
                    Encoded{21, u"日", "\x1B$BF|\x1B(B"}, Encoded{30, u"é", "\x8E"},
                    Encoded{10, u"é", std::string("\xFF\xFE\xE9\0", 4)},
                    Encoded{0x90000100, u"é", std::string("\0\xE9", 2)},
                    Encoded{0x94000100, u"é", std::string("\xE9\0", 2)},
                    Encoded{0x8C000100, u"é", std::string("\xFF\xFE\0\0\xE9\0\0\0", 8)},
                    Encoded{0x98000100, u"😀", std::string("\0\x01\xF6\0", 4)},
                    Encoded{0x9C000100, u"😀", std::string("\0\xF6\x01\0", 4)},
                    Encoded{0x80000A02, u"Ж", "\xF6"}, Encoded{0x8000020F, u"€", "\xA4"},
                    Encoded{0x80000632, u"日", "\xC8\xD5"}, Encoded{0x80000A03, u"日", "\xA4\xE9"},
                    Encoded{0x80000940, u"가", "\xB0\xA1"}));

TEST(Encodings, WithoutAByteOrderMarkUTF16IsBigEndian) {
    EXPECT_EQ(NSString::initWithData_encoding(NSData(std::string("\0\xE9", 2)), NSUTF16StringEncoding),
              NSString(u"é"));
    EXPECT_EQ(
        NSString::initWithData_encoding(NSData(std::string("\xFE\xFF\0\xE9", 4)), NSUTF16StringEncoding),
        NSString(u"é"));
}

struct BadBytes {
    unsigned long encoding;
    std::string bytes;
};

void PrintTo(const BadBytes& bad, std::ostream* out) {
    *out << bad.encoding << " " << testing::PrintToString(bad.bytes);
}

class BadEncodings : public testing::TestWithParam<BadBytes> {};

TEST_P(BadEncodings, GiveNil) {
    EXPECT_TRUE(NSString::initWithData_encoding(NSData(GetParam().bytes), GetParam().encoding).isNil());
}

INSTANTIATE_TEST_SUITE_P(Table, BadEncodings,
                         testing::Values(BadBytes{1, "\x80"}, BadBytes{4, "\xC3"}, BadBytes{8, "\x93"},
                                         BadBytes{10, "\xFF\xFE\xE9"},
                                         BadBytes{0x94000100, std::string("\0\xD8", 2)},
                                         BadBytes{0x9C000100, std::string("\0\0\x11\0", 4)},
                                         BadBytes{7, "\xE9"}, BadBytes{7, "\\"}, BadBytes{7, "\\u12"},
                                         BadBytes{7, "\\9"}, BadBytes{7, "\\777777"}, BadBytes{0, "a"},
                                         BadBytes{987654321, "a"}));

TEST(BadEncodings, TextThatAnEncodingCannotHoldGivesNil) {
    for (const unsigned long encoding : {1UL, 5UL, 30UL, 8UL, 0UL, 987654321UL}) {
        EXPECT_TRUE(NSString(u"😀").dataUsingEncoding(encoding).isNil()) << encoding;
    }
    for (const unsigned long encoding : {1UL, 4UL, 10UL, 30UL}) {
        EXPECT_TRUE(NSString(std::u16string_view(u"\xD800", 1)).dataUsingEncoding(encoding).isNil())
            << encoding;
    }
    EXPECT_TRUE(NSString(u"\uFF21").dataUsingEncoding(5).isNil()) << "a likeness is not the character";
    EXPECT_TRUE(NSString(u"a\u200Bb").dataUsingEncoding(5).isNil()) << "what is not shown would be lost";
    EXPECT_TRUE(NSString(u"\uFEFFa").dataUsingEncoding(8).isNil());
}

TEST(Encodings, NonLossyASCIIHoldsEverything) {
    EXPECT_EQ(NSString(std::u16string_view(u"\xD800", 1)).dataUsingEncoding(NSNonLossyASCIIStringEncoding),
              NSData("\\ud800"));
}

TEST(Encodings, NilGivesNil) {
    EXPECT_TRUE(NSString().dataUsingEncoding(NSUTF8StringEncoding).isNil());
    EXPECT_TRUE(NSString::initWithData_encoding(NSData(), NSUTF8StringEncoding).isNil());
}

TEST(Encodings, TenMillionUnits) {
    const NSString text = std::u16string(10'000'000, u'é');
    for (const unsigned long encoding : {5UL, 4UL, 30UL, 10UL}) {
        EXPECT_EQ(NSString::initWithData_encoding(text.dataUsingEncoding(encoding), encoding), text);
    }
}

} // namespace qrv
