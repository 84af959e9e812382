#include "Platform/Foundation/NSString.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

struct Search {
    const char16_t* text;
    const char16_t* pattern;
    unsigned long options;
    NSRange found;
};

void PrintTo(const Search& search, std::ostream* out) {
    *out << NSString(search.text).utf8() << " / " << NSString(search.pattern).utf8() << " / "
         << search.options;
}

constexpr NSRange nowhere{NSNotFound, 0};
constexpr unsigned long caseless = NSCaseInsensitiveSearch;
constexpr unsigned long markless = NSDiacriticInsensitiveSearch;
constexpr unsigned long widthless = NSWidthInsensitiveSearch;

class NSStringSearch : public testing::TestWithParam<Search> {};

TEST_P(NSStringSearch, FindsTheFirstOccurrence) {
    const Search& s = GetParam();
    EXPECT_EQ(NSString(s.text).rangeOfString_options(s.pattern, s.options), s.found);
}

INSTANTIATE_TEST_SUITE_P(
    Table, NSStringSearch,
    testing::Values(Search{u"abc", u"bc", 0, {1, 2}}, Search{u"abc", u"", 0, nowhere},
                    Search{u"abc", nullptr, 0, nowhere}, Search{nullptr, u"a", 0, nowhere},
                    Search{u"xe\u0301y", u"\u00E9", 0, {1, 2}}, Search{u"x\u00E9y", u"e\u0301", 0, {1, 1}},
                    Search{u"e\u0301e", u"e", 0, {2, 1}}, Search{u"e\u0301", u"e", NSLiteralSearch, {0, 1}},
                    Search{u"a\u0323\u0301b", u"a\u0301\u0323", 0, {0, 3}},
                    Search{u"xABC", u"abc", caseless, {1, 3}}, Search{u"xABC", u"abc", 0, nowhere},
                    Search{u"Straße", u"STRASSE", caseless, {0, 6}}, Search{u"ß", u"s", caseless, nowhere},
                    Search{u"ßs", u"ss", caseless, {0, 1}}, Search{u"xsss", u"ss", caseless, {1, 2}},
                    Search{u"été", u"ete", markless, {0, 3}}, Search{u"e\u0301x", u"e", markless, {0, 2}},
                    Search{u"\u0301ab", u"a", markless, {0, 2}}, Search{u"ガ", u"カ", markless, {0, 1}},
                    Search{u"ｶﾞ", u"ガ", widthless, {0, 2}}, Search{u"ＡＢ", u"B", widthless, {1, 1}},
                    Search{u"\u0301", u"\u0301", markless, nowhere},
                    Search{u"abab", u"ab", NSAnchoredSearch, {0, 2}},
                    Search{u"xab", u"ab", NSAnchoredSearch, nowhere},
                    Search{u"xab", u"ab", NSAnchoredSearch | NSLiteralSearch, nowhere},
                    Search{u"ab", u"a", NSAnchoredSearch | NSLiteralSearch, {0, 1}},
                    Search{u"e\u0301", u"e", NSAnchoredSearch, nowhere},
                    Search{u"É!", u"e", NSAnchoredSearch | caseless | markless, {0, 1}}));

TEST(NSStringCompare, WithoutRegardToWhatTheOptionsName) {
    EXPECT_EQ(NSString(u"é").compare_options(u"e\u0301", 0), NSOrderedSame);
    EXPECT_EQ(NSString(u"a").compare_options(u"B", 0), NSOrderedDescending);
    EXPECT_EQ(NSString(u"a").compare_options(u"B", caseless), NSOrderedAscending);
    EXPECT_EQ(NSString(u"É").compare_options(u"e", caseless | markless), NSOrderedSame);
    EXPECT_EQ(NSString(u"Ａ").compare_options(u"A", widthless), NSOrderedSame);
    EXPECT_EQ(NSString(u"K\u0345").caseInsensitiveCompare(u"kι"), NSOrderedSame);
    EXPECT_EQ(NSString().caseInsensitiveCompare(u""), NSOrderedSame);
    EXPECT_EQ(NSString().caseInsensitiveCompare(u"a"), NSOrderedAscending);
    EXPECT_EQ(
        NSString(std::u16string_view(u"\xD800", 1)).caseInsensitiveCompare(std::u16string_view(u"\xD800", 1)),
        NSOrderedSame);
}

TEST(NSStringCompare, LocalizedAndNumeric) {
    EXPECT_EQ(NSString(u"a2").compare_options(u"a10", kCFCompareLocalized | NSNumericSearch),
              NSOrderedAscending);
    EXPECT_EQ(NSString(u"a2").compare_options(u"a10", kCFCompareLocalized), NSOrderedDescending);
    EXPECT_EQ(NSString(u"a").compare_options(u"A", kCFCompareLocalized), NSOrderedAscending);
    EXPECT_EQ(NSString(u"a").compare_options(u"A", kCFCompareLocalized | caseless), NSOrderedSame);
}

TEST(NSStringSearch, RepetitiveTextsAreSearchedInLinearTime) {
    const NSString text = std::u16string(1'000'000, u'a');
    const NSString needle = std::u16string(500'000, u'A') + u"B";
    EXPECT_EQ(text.rangeOfString_options(needle, caseless), nowhere);
    // Every place matches by units, but none is a whole character.
    std::u16string marked;
    for (int i = 0; i < 200'000; ++i) marked.append(u"e\u0301");
    EXPECT_EQ(NSString(marked).rangeOfString_options(u"e", caseless), nowhere);
}

} // namespace qrv
