#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSArray strings(std::initializer_list<const char16_t*> texts) {
    std::vector<id> all;
    for (const char16_t* text : texts) all.push_back(NSString(text));
    return NSArray(all);
}

NSString units(std::u16string_view text) {
    return NSString(text);
}

} // namespace

TEST(TextMunging, NilReceiversGiveNilFalseOrZero) {
    const NSString nothing;
    EXPECT_FALSE(qrvHasCharacter_atIndex(nothing, u'a', 0));
    EXPECT_TRUE(qrvJoin(nothing, NSArray::array()).isNil());
    EXPECT_TRUE(qrvStringByEnsuringSuffix(nothing, u"a").isNil());
    EXPECT_TRUE(qrvFirstSpaceComponent(nothing).isNil());
    EXPECT_TRUE(qrvLastSpaceComponent(nothing).isNil());
    EXPECT_TRUE(qrvComponentsSeparatedByLineSeparators(nothing).isNil());
    EXPECT_TRUE(qrvStringByNormalizingLineBreaks(nothing).isNil());
    EXPECT_TRUE(qrvStringByReplacingString_withString(nothing, u"a", u"b").isNil());
    EXPECT_TRUE(qrvStringByReplacingFirstOccurrenceOfString_withString(nothing, u"a", u"b").isNil());
    EXPECT_TRUE(qrvStringByExpandingKeysInDictionary(nothing, {{NSString(u"a"), NSString(u"b")}}).isNil());
    EXPECT_FALSE(qrvContainsString(nothing, u"a"));
    EXPECT_FALSE(qrvCaseInsensitiveContainsString(nothing, u"a"));
    EXPECT_FALSE(qrvHasCaseInsensitivePrefix(nothing, u"a"));
    EXPECT_FALSE(qrvHasDiacriticPrefix(nothing, u"a"));
    EXPECT_FALSE(qrvHasDiacriticInsensitivePrefix(nothing, u"a"));
    EXPECT_FALSE(qrvCaseInsensitiveIsEqual(nothing, nothing));
    EXPECT_TRUE(qrvStringByStripping(nothing).isNil());
    EXPECT_TRUE(qrvStringByTrimmingNulls(nothing).isNil());
    EXPECT_TRUE(qrvStringByKeepingCharactersInSet(nothing, NSCharacterSet()).isNil());
    EXPECT_TRUE(qrvStringByChunking_with(nothing, 0, u"-").isNil());
    EXPECT_FALSE(qrvContainsCharacter(nothing, u'a'));
    EXPECT_EQ(qrvCountOccurrencesOfCharacter(nothing, u'a'), 0u);
    EXPECT_FALSE(qrvMatchesCharacterSet(nothing, NSCharacterSet()));
}

TEST(TextMunging, NilArgumentsAreDefined) {
    const NSString text = u"text";
    const NSString nothing;
    EXPECT_TRUE(qrvJoin(text, NSArray()).isNil());
    EXPECT_EQ(qrvStringByEnsuringSuffix(text, nothing), text);
    EXPECT_EQ(qrvStringByReplacingString_withString(text, nothing, u"x"), text);
    EXPECT_EQ(qrvStringByReplacingString_withString(text, u"t", nothing), NSString(u"ex"));
    EXPECT_EQ(qrvStringByReplacingFirstOccurrenceOfString_withString(text, nothing, u"x"), text);
    EXPECT_EQ(qrvStringByReplacingFirstOccurrenceOfString_withString(text, u"t", nothing), NSString(u"ext"));
    EXPECT_TRUE(qrvStringByExpandingKeysInDictionary(text, NSDictionary()).isIdenticalTo(text));
    EXPECT_FALSE(qrvContainsString(text, nothing));
    EXPECT_FALSE(qrvCaseInsensitiveContainsString(text, nothing));
    EXPECT_FALSE(qrvHasCaseInsensitivePrefix(text, nothing));
    EXPECT_FALSE(qrvHasDiacriticPrefix(text, nothing));
    EXPECT_FALSE(qrvHasDiacriticInsensitivePrefix(text, nothing));
    EXPECT_FALSE(qrvCaseInsensitiveIsEqual(text, id()));
    EXPECT_EQ(qrvStringByKeepingCharactersInSet(text, NSCharacterSet()), NSString(u""));
    EXPECT_EQ(qrvStringByChunking_with(text, 2, nothing), text);
    EXPECT_FALSE(qrvMatchesCharacterSet(text, NSCharacterSet()));
}

TEST(TextMunging, HasCharacterAtIndexInsideOnly) {
    EXPECT_TRUE(qrvHasCharacter_atIndex(u"ab", u'b', 1));
    EXPECT_FALSE(qrvHasCharacter_atIndex(u"ab", u'a', 1));
    EXPECT_FALSE(qrvHasCharacter_atIndex(u"ab", u'b', 2));
}

TEST(TextMunging, JoinsWithTheReceiverBetween) {
    EXPECT_EQ(qrvJoin(u", ", strings({u"a", u"b", u"c"})), NSString(u"a, b, c"));
    EXPECT_EQ(qrvJoin(u", ", NSArray::array()), NSString(u""));
}

TEST(TextMunging, EnsuresASuffixOnce) {
    EXPECT_EQ(qrvStringByEnsuringSuffix(u"a", u".b"), NSString(u"a.b"));
    EXPECT_EQ(qrvStringByEnsuringSuffix(u"a.b", u".b"), NSString(u"a.b"));
    EXPECT_EQ(qrvStringByEnsuringSuffix(u"a", u""), NSString(u"a"));
}

TEST(TextMunging, SpaceComponents) {
    EXPECT_EQ(qrvFirstSpaceComponent(u"one two three"), NSString(u"one"));
    EXPECT_EQ(qrvLastSpaceComponent(u"one two three"), NSString(u"three"));
    EXPECT_EQ(qrvFirstSpaceComponent(u" x "), NSString(u""));
    EXPECT_EQ(qrvLastSpaceComponent(u" x "), NSString(u""));
    EXPECT_EQ(qrvFirstSpaceComponent(u"one\ttwo"), NSString(u"one\ttwo"));
    EXPECT_EQ(qrvLastSpaceComponent(u""), NSString(u""));
}

struct Lines {
    std::u16string text;
    NSArray lines;
};

void PrintTo(const Lines& test, std::ostream* out) {
    *out << testing::PrintToString(test.text);
}

class LineSplitting : public testing::TestWithParam<Lines> {};

TEST_P(LineSplitting, GivesTheLines) {
    EXPECT_EQ(qrvComponentsSeparatedByLineSeparators(GetParam().text), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(
    NSStringQRV, LineSplitting,
    testing::Values(Lines{u"", NSArray::array()}, Lines{u"a", strings({u"a"})},
                    Lines{u"a\r\nb\n", strings({u"a", u"b"})}, Lines{u"a\n\nb", strings({u"a", u"", u"b"})},
                    Lines{u"\n", strings({u""})}, Lines{u"\n\n", strings({u"", u""})},
                    Lines{u"a\rb\u0085c\u2028d\u2029e\nf", strings({u"a", u"b", u"c", u"d", u"e", u"f"})},
                    Lines{u"a\n\rb", strings({u"a", u"", u"b"})},
                    Lines{u"a\r\r\nb", strings({u"a", u"", u"b"})}, Lines{u"\r\n", strings({u""})},
                    Lines{u"a\vb\fc", strings({u"a\vb\fc"})}));

TEST(TextMunging, NormalizesLineBreaks) {
    EXPECT_EQ(qrvStringByNormalizingLineBreaks(u"a\r\r\nb"), NSString(u"a\n\nb"));
    EXPECT_EQ(qrvStringByNormalizingLineBreaks(u"a\nb"), NSString(u"a\nb"));
    EXPECT_EQ(qrvStringByNormalizingLineBreaks(u"\r\n\r"), NSString(u"\n\n"));
}

TEST(TextMunging, ReplacesAllOrTheFirst) {
    EXPECT_EQ(qrvStringByReplacingString_withString(u"a-b-c", u"-", u"+"), NSString(u"a+b+c"));
    EXPECT_EQ(qrvStringByReplacingFirstOccurrenceOfString_withString(u"a-b-c", u"-", u"++"),
              NSString(u"a++b-c"));
    EXPECT_EQ(qrvStringByReplacingFirstOccurrenceOfString_withString(u"abc", u"-", u"+"), NSString(u"abc"));
}

TEST(TextMunging, ExpandsKeysOneAfterAnotherOnTheGrowingText) {
    const NSDictionary d = {{NSString(u"{a}"), NSString(u"<{b}>")},
                            {NSString(u"{b}"), NSNumber::numberWithInteger(5)}};
    EXPECT_EQ(qrvStringByExpandingKeysInDictionary(u"{a}{b}{c}", d), NSString(u"<5>5{c}"));
    const NSString text = u"x";
    EXPECT_TRUE(qrvStringByExpandingKeysInDictionary(text, NSDictionary::dictionary()).isIdenticalTo(text));
    EXPECT_EQ(qrvStringByExpandingKeysInDictionary(u"1", {{NSNumber::numberWithInteger(1), NSString(u"x")}}),
              NSString(u"1"));
}

TEST(TextMunging, ContainsByUnits) {
    EXPECT_TRUE(qrvContainsString(u"abc", u"bc"));
    EXPECT_FALSE(qrvContainsString(u"abc", u"BC"));
    EXPECT_FALSE(qrvContainsString(u"abc", u""));
    EXPECT_FALSE(qrvContainsString(u"\u00E9", u"e\u0301"));
}

TEST(TextMunging, ContainsWhateverTheCase) {
    EXPECT_TRUE(qrvCaseInsensitiveContainsString(u"Grüße", u"GRÜSSE"));
    EXPECT_TRUE(qrvCaseInsensitiveContainsString(u"xΣΊΣΥΦΟΣ", u"σίσυφος"));
    EXPECT_TRUE(qrvCaseInsensitiveContainsString(u"cafe\u0301!", u"CAFÉ"));
    EXPECT_FALSE(qrvCaseInsensitiveContainsString(u"café", u"cafe"));
    EXPECT_FALSE(qrvCaseInsensitiveContainsString(u"abc", u""));
}

TEST(TextMunging, PrefixesWhateverTheCase) {
    EXPECT_TRUE(qrvHasCaseInsensitivePrefix(u"HTTP://x", u"http:"));
    EXPECT_FALSE(qrvHasCaseInsensitivePrefix(u"xhttp:", u"http:"));
    EXPECT_FALSE(qrvHasCaseInsensitivePrefix(u"été", u"ETE"));
    EXPECT_FALSE(qrvHasCaseInsensitivePrefix(u"a", u"ab"));
    EXPECT_FALSE(qrvHasCaseInsensitivePrefix(u"a", u""));
}

TEST(TextMunging, PrefixesWhateverTheDiacriticsAndTheWidth) {
    EXPECT_TRUE(qrvHasDiacriticPrefix(u"Émile Zola", u"Emile"));
    EXPECT_TRUE(qrvHasDiacriticPrefix(u"Emile", u"E\u0301m"));
    EXPECT_TRUE(qrvHasDiacriticPrefix(u"ＡＢＣ", u"AB"));
    EXPECT_FALSE(qrvHasDiacriticPrefix(u"Émile", u"emile"));
    EXPECT_FALSE(qrvHasDiacriticPrefix(u"xÉmile", u"Emile"));
    EXPECT_FALSE(qrvHasDiacriticPrefix(u"Émile", u""));
}

TEST(TextMunging, PrefixesWhateverTheDiacriticsTheWidthAndTheCase) {
    EXPECT_TRUE(qrvHasDiacriticInsensitivePrefix(u"Émile Zola", u"emile"));
    EXPECT_TRUE(qrvHasDiacriticInsensitivePrefix(u"ａｂｃ", u"AB"));
    EXPECT_FALSE(qrvHasDiacriticInsensitivePrefix(u"Zola", u"emile"));
}

TEST(TextMunging, CaseInsensitiveEqualityIsForStringsOnly) {
    EXPECT_TRUE(qrvCaseInsensitiveIsEqual(u"STRASSE", NSString(u"straße")));
    EXPECT_TRUE(qrvCaseInsensitiveIsEqual(u"", NSString(u"")));
    EXPECT_FALSE(qrvCaseInsensitiveIsEqual(u"a", NSString(u"á")));
    EXPECT_FALSE(qrvCaseInsensitiveIsEqual(u"1", NSNumber::numberWithInteger(1)));
}

TEST(TextMunging, StripsWhiteSpaceAndLineBreaksAtBothEnds) {
    EXPECT_EQ(qrvStringByStripping(u" \t\r\n\u00A0a b\u3000\u2028"), NSString(u"a b"));
    EXPECT_EQ(qrvStringByStripping(u" \n "), NSString(u""));
    EXPECT_EQ(qrvStringByStripping(u""), NSString(u""));
}

TEST(TextMunging, TrimsNullsWhereverTheyStand) {
    EXPECT_EQ(qrvStringByTrimmingNulls(units({u"\0a\0\0b\0", 6})), NSString(u"ab"));
    EXPECT_EQ(qrvStringByTrimmingNulls(u"ab"), NSString(u"ab"));
    EXPECT_EQ(qrvStringByTrimmingNulls(units({u"\0", 1})), NSString(u""));
}

TEST(TextMunging, KeepsTheUnitsOfASetSurrogateHalvesIncluded) {
    const NSCharacterSet set = NSCharacterSet::characterSetWithCharactersInString(u"abc");
    EXPECT_EQ(qrvStringByKeepingCharactersInSet(u"xaybzc", set), NSString(u"abc"));
    const NSCharacterSet half = NSCharacterSet::characterSetWithCharactersInString(units({u"\xD83D", 1}));
    EXPECT_EQ(qrvStringByKeepingCharactersInSet(u"a😀", half), units({u"\xD83D", 1}));
}

TEST(TextMunging, ChunksWithASeparator) {
    EXPECT_EQ(qrvStringByChunking_with(u"abcdefg", 3, u"-"), NSString(u"abc-def-g"));
    EXPECT_EQ(qrvStringByChunking_with(u"abcdef", 3, u"-"), NSString(u"abc-def"));
    EXPECT_EQ(qrvStringByChunking_with(u"", 3, u"-"), NSString(u""));
    EXPECT_EQ(qrvStringByChunking_with(u"ab", 9, u"-"), NSString(u"ab"));
}

TEST(TextMunging, ChunksOfNothingFailFromTwoUnitsOn) {
    EXPECT_EQ(qrvStringByChunking_with(u"a", 0, u"-"), NSString(u"a"));
    EXPECT_THROW(qrvStringByChunking_with(u"ab", 0, u"-"), NSException);
}

TEST(TextMunging, CountsAndFindsUnits) {
    EXPECT_TRUE(qrvContainsCharacter(u"abc", u'b'));
    EXPECT_FALSE(qrvContainsCharacter(u"abc", u'x'));
    EXPECT_FALSE(qrvContainsCharacter(u"", u'a'));
    EXPECT_EQ(qrvCountOccurrencesOfCharacter(u"banana", u'a'), 3u);
    EXPECT_EQ(qrvCountOccurrencesOfCharacter(u"", u'a'), 0u);
}

TEST(TextMunging, MatchesACharacterSetWithEveryUnit) {
    const NSCharacterSet digits = NSCharacterSet::characterSetWithCharactersInString(u"0123456789");
    EXPECT_TRUE(qrvMatchesCharacterSet(u"123", digits));
    EXPECT_FALSE(qrvMatchesCharacterSet(u"12a", digits));
    EXPECT_TRUE(qrvMatchesCharacterSet(u"", digits));
    EXPECT_TRUE(qrvMatchesCharacterSet(u"", NSCharacterSet()));
}

TEST(TextMunging, TenMillionUnitsTakeLinearTime) {
    const NSString text = std::u16string(10'000'000, u'a');
    EXPECT_EQ(qrvStringByChunking_with(text, 5'000'000, u"-").length(), 10'000'001u);
    EXPECT_EQ(qrvStringByNormalizingLineBreaks(text), text);
    EXPECT_EQ(qrvStringByTrimmingNulls(text), text);
    EXPECT_EQ(qrvComponentsSeparatedByLineSeparators(text).count(), 1u);
    EXPECT_TRUE(qrvHasCaseInsensitivePrefix(text, u"AAA"));
    EXPECT_FALSE(qrvCaseInsensitiveContainsString(text, u"b"));
}

} // namespace qrv
