#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVQueryStrings.h"

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSDictionary pairs(std::initializer_list<std::pair<const char16_t*, const char16_t*>> entries) {
    NSMutableDictionary dictionary;
    for (const auto& [key, value] : entries) dictionary.setObject_forKey(NSString(value), NSString(key));
    return dictionary;
}

/// The query string as a system before 10.10 makes it.
NSString olderQueryString(const NSDictionary& dictionary) {
    NSProcessInfo::processInfo().setVersionForTesting({1056.0, {10, 9, 5}});
    const NSString query = qrvQueryStringWithDictionary(dictionary);
    NSProcessInfo::processInfo().setVersionForTesting();
    return query;
}

} // namespace

struct Decoding {
    const char16_t* text;
    const char16_t* kept;
    const char16_t* decoded;
};

void PrintTo(const Decoding& test, std::ostream* out) {
    *out << printed(test.text) << " keeping " << printed(test.kept);
}

class PercentDecoding : public testing::TestWithParam<Decoding> {};

TEST_P(PercentDecoding, ReplacesTheEscapes) {
    EXPECT_EQ(qrvDecodePercentEscapesKeepingEscaped(GetParam().text, GetParam().kept),
              NSString(GetParam().decoded));
}

INSTANTIATE_TEST_SUITE_P(
    NSStringQRV, PercentDecoding,
    testing::Values(Decoding{u"a%20b", u"", u"a b"}, Decoding{u"%C3%A9%f0%9f%98%80", u"", u"é😀"},
                    Decoding{u"+", u"", u"+"}, Decoding{u"", u"", u""}, Decoding{u"é", u"", u"é"},
                    Decoding{u"%2F%20%C3%A9", u"/é", u"%2F %C3%A9"}, Decoding{u"%2f", u"/", u"%2f"},
                    Decoding{u"%25", u"%", u"%25"}, Decoding{u"%41%42", u"B", u"A%42"},
                    Decoding{u"%zz", nullptr, u"%zz"}, Decoding{u"%", u"", nullptr},
                    Decoding{u"a%4", u"", nullptr}, Decoding{u"%4g", u"", nullptr},
                    Decoding{u"%g4", u"", nullptr}, Decoding{u"%FF", u"", nullptr},
                    Decoding{u"%C3x%A9", u"", nullptr}, Decoding{nullptr, u"", nullptr}));

TEST(PercentDecoding, OfEverything) {
    EXPECT_EQ(qrvDecodePercentEscapes(u"%41+%26"), NSString(u"A+&"));
    EXPECT_TRUE(qrvDecodePercentEscapes(u"%4").isNil());
    EXPECT_EQ(qrvDecodePercentEscapes(u"a%00b").length(), 3u);
}

TEST(PercentDecoding, TenMillionUnits) {
    std::u16string text;
    for (int i = 0; i < 3'333'333; ++i) text.append(u"%41");
    EXPECT_EQ(qrvDecodePercentEscapes(text).length(), 3'333'333u);
}

TEST(PercentEncoding, ForAQueryStringEscapesDelimitersToo) {
    EXPECT_EQ(qrvEncodeForQueryString(u"a b&c=d+e;é/?#%"), NSString(u"a%20b%26c%3Dd+e;%C3%A9/?%23%25"));
    EXPECT_EQ(qrvEncodeForQueryString(u"AZaz09-_.!~*'();/?:@+$,"), NSString(u"AZaz09-_.!~*'();/?:@+$,"));
    EXPECT_EQ(qrvEncodeForQueryString(u"\"<>[]\\^`{|}"), NSString(u"%22%3C%3E%5B%5D%5C%5E%60%7B%7C%7D"));
    EXPECT_TRUE(qrvEncodeForQueryString(NSString()).isNil());
    EXPECT_TRUE(qrvEncodeForQueryString(std::u16string_view(u"\xDC00", 1)).isNil());
}

TEST(PercentEncoding, OfAURLKeepsTheGivenCharacters) {
    EXPECT_EQ(qrvEncodeURLKeepingUnescaped(u"http://h/a b#%é&=", u"#%"),
              NSString(u"http://h/a%20b#%%C3%A9&="));
    EXPECT_EQ(qrvEncodeURLKeepingUnescaped(u"é ü", u"é"), NSString(u"é%20%C3%BC"));
    EXPECT_EQ(qrvEncodeURLKeepingUnescaped(u"a#", NSString()), NSString(u"a%23"));
    EXPECT_TRUE(qrvEncodeURLKeepingUnescaped(NSString(), u"a").isNil());
}

TEST(QueryStringDictionary, OfManyOddPartsKeepsTheGoodOne) {
    EXPECT_EQ(qrvQueryStringDictionary(u"x=%41&y&z=1=2&x=2"), pairs({{u"x", u"2"}}));
}

TEST(QueryStringDictionary, DecodesNamesAndValues) {
    EXPECT_EQ(qrvQueryStringDictionary(u"a=1&b=2"), pairs({{u"a", u"1"}, {u"b", u"2"}}));
    EXPECT_EQ(qrvQueryStringDictionary(u"a%26=%3D+&b="), pairs({{u"a&", u"=+"}, {u"b", u""}}));
    EXPECT_EQ(qrvQueryStringDictionary(u"=x"), pairs({{u"", u"x"}}));
    EXPECT_EQ(qrvQueryStringDictionary(u"&&a=1&"), pairs({{u"a", u"1"}}));
}

TEST(QueryStringDictionary, PartsWithMalformedEscapesAreLeftOut) {
    EXPECT_EQ(qrvQueryStringDictionary(u"a=%4&%zz=1&b=%FF&c=1"), pairs({{u"c", u"1"}}));
}

TEST(QueryStringDictionary, EmptyAndNil) {
    EXPECT_EQ(qrvQueryStringDictionary(u""), NSDictionary::dictionary());
    EXPECT_TRUE(qrvQueryStringDictionary(NSString()).isNil());
}

TEST(QueryStringDictionary, TenMillionUnits) {
    EXPECT_EQ(qrvQueryStringDictionary(std::u16string(10'000'000, u'&')).count(), 0u);
    EXPECT_EQ(qrvQueryStringDictionary(std::u16string(10'000'000, u'=')).count(), 0u);
}

TEST(QueryString, OrdersKeysWhateverTheCase) {
    const NSDictionary d = pairs({{u"b", u"1"}, {u"A", u"2"}, {u"c", u"3"}});
    EXPECT_EQ(qrvQueryStringWithDictionary(d), NSString(u"A=2&b=1&c=3"));
    EXPECT_EQ(olderQueryString(d), NSString(u"A=2&b=1&c=3"));
}

TEST(QueryString, PlusAndSemicolonAreEscapedFrom10_10On) {
    const NSDictionary d = pairs({{u"k+;", u"v+;"}});
    EXPECT_EQ(qrvQueryStringWithDictionary(d), NSString(u"k%2B%3B=v%2B%3B"));
    EXPECT_EQ(olderQueryString(d), NSString(u"k+;=v+;"));
}

TEST(QueryString, DelimitersPercentSignsAndOtherCharactersAreEscaped) {
    const NSDictionary d = pairs({{u"a&b=", u"c d%é&=#"}});
    EXPECT_EQ(qrvQueryStringWithDictionary(d), NSString(u"a%26b%3D=c%20d%25%C3%A9%26%3D%23"));
    EXPECT_EQ(olderQueryString(d), NSString(u"a%26b%3D=c%20d%25%C3%A9%26%3D%23"));
}

TEST(QueryString, ReadsBackAsTheDictionary) {
    const NSDictionary d = pairs({{u"", u"empty"}, {u"naïve key", u""}, {u"k", u"a+b;c&d=e%20😀/?"}});
    EXPECT_EQ(qrvQueryStringDictionary(qrvQueryStringWithDictionary(d)), d);
    EXPECT_EQ(qrvQueryStringDictionary(olderQueryString(d)), d);
}

TEST(QueryString, EmptyNilAndValuesThatAreNoStrings) {
    EXPECT_EQ(qrvQueryStringWithDictionary(NSDictionary::dictionary()), NSString(u""));
    EXPECT_EQ(qrvQueryStringWithDictionary(NSDictionary()), NSString(u""));
    EXPECT_EQ(olderQueryString(NSDictionary()), NSString(u""));
    EXPECT_EQ(qrvQueryStringWithDictionary({{NSString(u"n"), NSNumber::numberWithInteger(5)}}),
              NSString(u"n=5"));
}

} // namespace qrv
