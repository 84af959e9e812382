#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSURLComponents.h"
#include "Platform/Foundation/Unicode.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

class ComposedCharacter : public testing::TestWithParam<const char16_t*> {};

TEST_P(ComposedCharacter, IsOneFromEachOfItsUnits) {
    const NSString sequence = GetParam();
    const NSString text = NSString(u"a").stringByAppendingString(sequence).stringByAppendingString(u"z");
    for (std::size_t i = 1; i <= sequence.length(); ++i) {
        EXPECT_EQ(text.rangeOfComposedCharacterSequenceAtIndex(i), (NSRange{1, sequence.length()}));
    }
    EXPECT_EQ(text.rangeOfComposedCharacterSequenceAtIndex(0), (NSRange{0, 1}));
}

INSTANTIATE_TEST_SUITE_P(Table, ComposedCharacter,
                         testing::Values(u"x", u"é", u"e\u0301\u0323", u"😀", u"👍🏽",
                                         u"👨‍👩‍👧", u"🇩🇪", u"🏳️‍🌈", u"각",
                                         u"\u1100\u1161\u11A8", u"\r\n", u"क्", u"1️⃣"));

TEST(ComposedCharacters, ALoneSurrogateStandsByItself) {
    const NSString text = std::u16string_view(u"a\xD800z\xDC00", 4);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(text.rangeOfComposedCharacterSequenceAtIndex(i), (NSRange{i, 1}));
    }
}

TEST(ComposedCharacters, BeyondTheEndRaises) {
    EXPECT_THROW(NSString(u"a").rangeOfComposedCharacterSequenceAtIndex(1), NSException);
    EXPECT_THROW(NSString().rangeOfComposedCharacterSequenceAtIndex(0), NSException);
}

TEST(ComposedCharacters, WalkingATextAgreesWithAskingForEach) {
    const NSString text = u"a\r\ne\u0301👨‍👩‍👧🇩🇪🇫🇷🇮 각\u11A8\u0301z";
    unicode::ComposedSequences sequences(text.view());
    std::size_t at = 0;
    while (const auto sequence = sequences.next()) {
        EXPECT_EQ(sequence->start, at);
        EXPECT_EQ(text.rangeOfComposedCharacterSequenceAtIndex(at), (NSRange{at, sequence->end - at}));
        at = sequence->end;
    }
    EXPECT_EQ(at, text.length());
    EXPECT_FALSE(unicode::ComposedSequences(u"").next());
}

TEST(Decomposition, IsCanonicalAndItsLengthAgrees) {
    EXPECT_EQ(NSString(u"é가ﬁ").decomposedStringWithCanonicalMapping(), NSString(u"e\u0301\u1100\u1161ﬁ"));
    EXPECT_EQ(NSString(u"a\u0301\u0323").decomposedStringWithCanonicalMapping(), NSString(u"a\u0323\u0301"));
    EXPECT_TRUE(NSString().decomposedStringWithCanonicalMapping().isNil());
    for (char32_t c = 0; c < 0x30000; ++c) {
        std::u16string text(1, static_cast<char16_t>(c));
        if (c > 0xFFFF)
            text = {static_cast<char16_t>(0xD7C0 + (c >> 10)), static_cast<char16_t>(0xDC00 + (c & 0x3FF))};
        text.append(u"\u0301");
        const NSString decomposed = NSString(text).decomposedStringWithCanonicalMapping();
        ASSERT_EQ(unicode::decomposedLength(text), decomposed.length()) << static_cast<unsigned>(c);
        ASSERT_EQ(decomposed.decomposedStringWithCanonicalMapping(), decomposed) << static_cast<unsigned>(c);
    }
}

struct LineCase {
    std::u16string text;
    NSRange range;
    std::size_t start, end, contentsEnd;
};

void PrintTo(const LineCase& test, std::ostream* out) {
    *out << testing::PrintToString(test.text) << " " << testing::PrintToString(test.range);
}

class LineRanges : public testing::TestWithParam<LineCase> {};

TEST_P(LineRanges, AreFound) {
    std::size_t start = 99;
    std::size_t end = 99;
    std::size_t contentsEnd = 99;
    const NSString text = GetParam().text;
    text.getLineStart_end_contentsEnd_forRange(&start, &end, &contentsEnd, GetParam().range);
    EXPECT_EQ(start, GetParam().start);
    EXPECT_EQ(end, GetParam().end);
    EXPECT_EQ(contentsEnd, GetParam().contentsEnd);
    text.getLineStart_end_contentsEnd_forRange(nullptr, nullptr, nullptr, GetParam().range);
}

INSTANTIATE_TEST_SUITE_P(
    Table, LineRanges,
    testing::Values(LineCase{u"ab\ncd", {1, 0}, 0, 3, 2}, LineCase{u"ab\ncd", {3, 0}, 3, 5, 5},
                    LineCase{u"ab\ncd", {0, 5}, 0, 5, 5}, LineCase{u"ab\ncd", {0, 3}, 0, 3, 2},
                    LineCase{u"ab\r\ncd", {0, 0}, 0, 4, 2}, LineCase{u"ab\r\ncd", {3, 0}, 0, 4, 2},
                    LineCase{u"ab\r\ncd", {0, 3}, 0, 4, 2}, LineCase{u"\n", {1, 0}, 1, 1, 1},
                    LineCase{u"", {0, 0}, 0, 0, 0}, LineCase{u"a\u2028b", {2, 0}, 2, 3, 3},
                    LineCase{u"a\r", {0, 0}, 0, 2, 1}));

TEST(LineRanges, BeyondTheEndRaises) {
    EXPECT_THROW(NSString(u"a").getLineStart_end_contentsEnd_forRange(nullptr, nullptr, nullptr, {2, 0}),
                 NSException);
    EXPECT_THROW(NSString(u"a").getLineStart_end_contentsEnd_forRange(nullptr, nullptr, nullptr, {1, 1}),
                 NSException);
}

TEST(NSCharacterSet, HoldsUnits) {
    const NSCharacterSet set = NSCharacterSet::characterSetWithCharactersInString(u"ab");
    EXPECT_TRUE(set.characterIsMember(u'a'));
    EXPECT_FALSE(set.characterIsMember(u'c'));
    EXPECT_TRUE(set.adding(u"c").characterIsMember(u'c'));
    EXPECT_FALSE(set.removing(u"a").characterIsMember(u'a'));
    EXPECT_EQ(set.adding(u"c").removing(u"c"), set);
    EXPECT_EQ(set.adding(NSString()).hash(), set.hash());
    EXPECT_FALSE(set == NSCharacterSet::characterSetWithCharactersInString(NSString()));
    EXPECT_FALSE(NSCharacterSet().characterIsMember(u'a'));
    EXPECT_TRUE(NSCharacterSet().adding(u"a").characterIsMember(u'a'));
    EXPECT_TRUE(NSCharacterSet::whitespaceAndNewlineCharacterSet().characterIsMember(u'\u2003'));
    EXPECT_FALSE(NSCharacterSet::URLQueryAllowedCharacterSet().characterIsMember(u'#'));
}

TEST(NSStringTrimming, TakesUnitsOfTheSetAtBothEnds) {
    const NSCharacterSet set = NSCharacterSet::characterSetWithCharactersInString(u"xy");
    EXPECT_EQ(NSString(u"xyaxbyx").stringByTrimmingCharactersInSet(set), NSString(u"axb"));
    EXPECT_EQ(NSString(u"xx").stringByTrimmingCharactersInSet(set), NSString(u""));
    EXPECT_EQ(NSString(u"x").stringByTrimmingCharactersInSet(NSCharacterSet()), NSString(u"x"));
}

TEST(NSStringPercentEncoding, EscapesWhatIsNotAllowedAndWhatIsNotASCII) {
    const NSCharacterSet set = NSCharacterSet::characterSetWithCharactersInString(u"aé");
    EXPECT_EQ(NSString(u"abé").stringByAddingPercentEncodingWithAllowedCharacters(set),
              NSString(u"a%62%C3%A9"));
    EXPECT_TRUE(NSString(std::u16string_view(u"\xD800", 1))
                    .stringByAddingPercentEncodingWithAllowedCharacters(set)
                    .isNil());
}

TEST(NSURLComponents, MakeAQueryOfItems) {
    NSURLComponents components;
    EXPECT_EQ(components.percentEncodedQuery(), NSString(u""));
    components.setQueryItems(
        {NSURLQueryItem::queryItemWithName_value(u"a b", u"c&d=e+;"),
         NSURLQueryItem::queryItemWithName_value(u"only", NSString()),
         NSURLQueryItem::queryItemWithName_value(u"bad", std::u16string_view(u"\xD800", 1))});
    EXPECT_EQ(components.percentEncodedQuery(), NSString(u"a%20b=c%26d%3De+;&only&bad=%EF%BF%BD"));
}

} // namespace qrv
