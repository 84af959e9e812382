#include "Platform/Foundation/NSString.h"

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSException.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSArray strings(std::initializer_list<const char16_t*> texts) {
    std::vector<id> all;
    for (const char16_t* text : texts) all.push_back(NSString(text));
    return NSArray(all);
}

} // namespace

TEST(NSString, EveryAccessorIsDefinedOnNil) {
    const NSString nothing;
    EXPECT_EQ(nothing.length(), 0u);
    EXPECT_TRUE(nothing.view().empty());
    EXPECT_EQ(nothing.utf8(), "");
    EXPECT_EQ(nothing.fileSystemRepresentation(), "");
    EXPECT_FALSE(nothing.isEqualToString(nothing));
    EXPECT_EQ(nothing.compare(u""), NSOrderedSame);
    EXPECT_FALSE(nothing.hasPrefix(u"a"));
    EXPECT_FALSE(nothing.hasSuffix(u"a"));
    EXPECT_EQ(nothing.rangeOfString(u"a"), (NSRange{NSNotFound, 0}));
    EXPECT_TRUE(nothing.substringFromIndex(0).isNil());
    EXPECT_TRUE(nothing.substringToIndex(0).isNil());
    EXPECT_TRUE(nothing.substringWithRange({0, 0}).isNil());
    EXPECT_TRUE(nothing.stringByReplacingOccurrencesOfString_withString(u"a", u"b").isNil());
    EXPECT_TRUE(nothing.componentsSeparatedByString(u"a").isNil());
    EXPECT_FALSE(nothing.boolValue());
    EXPECT_EQ(nothing.integerValue(), 0);
    EXPECT_EQ(nothing.doubleValue(), 0.0);
    EXPECT_TRUE(nothing.lastPathComponent().isNil());
    EXPECT_TRUE(nothing.stringByDeletingLastPathComponent().isNil());
}

TEST(NSString, NilArgumentsAreDefined) {
    const NSString text = u"abc";
    const NSString nothing;
    EXPECT_FALSE(text.isEqualToString(nothing));
    EXPECT_EQ(text.compare(nothing), NSOrderedDescending);
    EXPECT_FALSE(text.hasPrefix(nothing));
    EXPECT_FALSE(text.hasSuffix(nothing));
    EXPECT_EQ(text.rangeOfString(nothing), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(text.stringByAppendingString(nothing), text);
    EXPECT_EQ(text.stringByReplacingOccurrencesOfString_withString(nothing, u"x"), text);
    EXPECT_EQ(text.stringByReplacingOccurrencesOfString_withString(u"b", nothing), NSString(u"ac"));
    EXPECT_EQ(text.componentsSeparatedByString(nothing), strings({u"abc"}));
    EXPECT_TRUE(NSString(static_cast<const char16_t*>(nullptr)).isNil());
    EXPECT_TRUE(NSString::stringWithUTF8String(nullptr).isNil());
}

TEST(NSString, MovingToItselfKeepsTheText) {
    NSString text = u"abc";
    NSString& same = text;
    text = std::move(same);
    EXPECT_EQ(text, NSString(u"abc"));
    text = same; // NOLINT(bugprone-use-after-move): that it may be used is what is tested
    EXPECT_EQ(text.view(), u"abc");
}

TEST(NSString, LengthCountsUnitsAndMayHoldNul) {
    EXPECT_EQ(NSString(u"a😀").length(), 3u);
    EXPECT_EQ(NSString(std::u16string_view(u"a\0b", 3)).length(), 3u);
}

TEST(NSString, UTF8RoundTripsAndInvalidBytesGiveNil) {
    EXPECT_EQ(NSString::stringWithUTF8String("a\xC3\xA9\xF0\x9F\x98\x80"), NSString(u"aé😀"));
    EXPECT_EQ(NSString(u"aé😀").utf8(), "a\xC3\xA9\xF0\x9F\x98\x80");
    for (const char* bad : {"\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_TRUE(NSString::stringWithUTF8String(bad).isNil());
    }
    EXPECT_EQ(NSString::fromUTF8("a\xFFz"), NSString(u"a\uFFFDz"));
    EXPECT_EQ(NSString::fromUTF8({}), NSString(u""));
    EXPECT_EQ(NSString(std::u16string_view(u"a\xD800", 2)).utf8(), "a\xEF\xBF\xBD");
}

TEST(NSString, EqualityAndHashAreByUnits) {
    EXPECT_EQ(NSString(u"é"), NSString(u"é"));
    EXPECT_EQ(NSString(u"é").hash(), NSString(u"é").hash());
    EXPECT_FALSE(NSString(u"e\u0301") == NSString(u"\u00E9"));
    EXPECT_TRUE(NSString(u"a").isEqualToString(u"a"));
}

TEST(NSString, ComparesByUnits) {
    EXPECT_EQ(NSString(u"a").compare(u"b"), NSOrderedAscending);
    EXPECT_EQ(NSString(u"b").compare(u"a"), NSOrderedDescending);
    EXPECT_EQ(NSString(u"a").compare(u"a"), NSOrderedSame);
    EXPECT_EQ(NSString(u"a").compare(u"aa"), NSOrderedAscending);
}

TEST(NSString, CharacterAtIndexRaisesBeyondTheEnd) {
    EXPECT_EQ(NSString(u"ab").characterAtIndex(1), u'b');
    EXPECT_THROW(NSString(u"ab").characterAtIndex(2), NSException);
    EXPECT_THROW(NSString().characterAtIndex(0), NSException);
}

TEST(NSString, PrefixesAndSuffixesEmptyOnesNever) {
    const NSString text = u"abc";
    EXPECT_TRUE(text.hasPrefix(u"ab"));
    EXPECT_TRUE(text.hasPrefix(text));
    EXPECT_FALSE(text.hasPrefix(u"b"));
    EXPECT_TRUE(text.hasSuffix(u"bc"));
    EXPECT_FALSE(text.hasSuffix(u"abcd"));
    EXPECT_FALSE(text.hasPrefix(u""));
    EXPECT_FALSE(text.hasSuffix(u""));
}

TEST(NSString, RangeOfStringIsTheFirstOccurrence) {
    EXPECT_EQ(NSString(u"abcabc").rangeOfString(u"bc"), (NSRange{1, 2}));
    EXPECT_EQ(NSString(u"abc").rangeOfString(u"x"), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(NSString(u"abc").rangeOfString(u""), (NSRange{NSNotFound, 0}));
}

TEST(NSString, SubstringsRaiseBeyondTheEnd) {
    const NSString text = u"abcd";
    EXPECT_EQ(text.substringFromIndex(1), NSString(u"bcd"));
    EXPECT_EQ(text.substringFromIndex(4), NSString(u""));
    EXPECT_EQ(text.substringToIndex(2), NSString(u"ab"));
    EXPECT_EQ(text.substringWithRange({1, 2}), NSString(u"bc"));
    EXPECT_THROW(text.substringFromIndex(5), NSException);
    EXPECT_THROW(text.substringToIndex(5), NSException);
    EXPECT_THROW(text.substringWithRange({5, 0}), NSException);
    EXPECT_THROW(text.substringWithRange({2, static_cast<std::size_t>(-1)}), NSException);
}

TEST(NSString, ReplacesFromLeftToRightWithoutOverlap) {
    EXPECT_EQ(NSString(u"aaa").stringByReplacingOccurrencesOfString_withString(u"aa", u"b"), NSString(u"ba"));
    EXPECT_EQ(NSString(u"a-b-").stringByReplacingOccurrencesOfString_withString(u"-", u"--"),
              NSString(u"a--b--"));
    EXPECT_EQ(NSString(u"abc").stringByReplacingOccurrencesOfString_withString(u"", u"x"), NSString(u"abc"));
}

TEST(NSString, SeparatesIntoComponents) {
    EXPECT_EQ(NSString(u"a,b").componentsSeparatedByString(u","), strings({u"a", u"b"}));
    EXPECT_EQ(NSString(u",a,,").componentsSeparatedByString(u","), strings({u"", u"a", u"", u""}));
    EXPECT_EQ(NSString(u"").componentsSeparatedByString(u","), strings({u""}));
    EXPECT_EQ(NSString(u"abc").componentsSeparatedByString(u""), strings({u"abc"}));
}

TEST(NSString, TenMillionUnitsGoThroughEveryOperation) {
    const NSString text = std::u16string(10'000'000, u'a');
    const NSString needle = std::u16string(1'000'000, u'a') + u'b';
    EXPECT_EQ(text.rangeOfString(needle).location, NSNotFound);
    EXPECT_EQ(text.stringByReplacingOccurrencesOfString_withString(needle, u""), text);
    EXPECT_EQ(text.componentsSeparatedByString(needle).count(), 1u);
    EXPECT_EQ(text.utf8().size(), 10'000'000u);
    EXPECT_EQ(NSString::fromUTF8(text.utf8()), text);
    EXPECT_EQ(text.integerValue(), 0);
}

} // namespace qrv
