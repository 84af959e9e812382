#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/Unicode.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"
#include "QRVFoundation/Source/QRVFunctions.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

constexpr char16_t family[] = u"👨‍👩‍👧"; // 8 units
constexpr char16_t thumb[] = u"👍🏽";            // 4 units
constexpr char16_t flags[] = u"🇩🇪🇫🇷";                // 4 units each

NSString joined(std::initializer_list<std::u16string_view> pieces) {
    std::u16string text;
    for (const std::u16string_view piece : pieces) text.append(piece);
    return NSString(std::move(text));
}

/// Keeps assertions from being written to the system log.
struct SilentDelegate : QRVLoggingDelegate {
    void logString(const NSString& string) override { last = string; }

    NSString last;
};

} // namespace

TEST(Substrings, NilReceiversGiveNil) {
    const NSString nothing;
    EXPECT_TRUE(qrvSubstringToString(nothing, u"a").isNil());
    EXPECT_TRUE(qrvSubstringFromString(nothing, u"a").isNil());
    EXPECT_TRUE(qrvSubstringToIndex(nothing, 0).isNil());
    EXPECT_TRUE(qrvSubstringToComposedIndex(nothing, 0).isNil());
    EXPECT_TRUE(qrvSubstringFromIndex(nothing, 0).isNil());
    EXPECT_TRUE(qrvStringByChopping(nothing).isNil());
    EXPECT_TRUE(qrvStringByChoppingComposedCharacter(nothing).isNil());
    EXPECT_TRUE(qrvStringByTruncatingMiddleAfterComposedLength(nothing, 0).isNil());
    EXPECT_TRUE(qrvStringByAddingSuffix_trimmingStemToTotal(nothing, u"x", 0).isNil());
    EXPECT_EQ(qrvRangeOfComposedCharacterSequencesInRange(nothing, {0, 1}), (NSRange{0, 0}));
}

TEST(Substrings, BeforeAndAfterTheFirstOccurrence) {
    EXPECT_EQ(qrvSubstringToString(u"a=b=c", u"="), NSString(u"a"));
    EXPECT_EQ(qrvSubstringFromString(u"a=b=c", u"="), NSString(u"b=c"));
    EXPECT_EQ(qrvSubstringToString(u"abc", u"="), NSString(u""));
    EXPECT_EQ(qrvSubstringFromString(u"abc", u"="), NSString(u""));
    EXPECT_EQ(qrvSubstringToString(u"abc", NSString()), NSString(u""));
    EXPECT_EQ(qrvSubstringFromString(u"abc", u""), NSString(u""));
}

TEST(Substrings, ToAnIndexEqualToTheLengthIsTheWhole) {
    EXPECT_EQ(qrvSubstringToIndex(u"abc", 3), NSString(u"abc"));
    EXPECT_EQ(qrvSubstringToIndex(u"abc", 99), NSString(u"abc"));
    EXPECT_EQ(qrvSubstringToIndex(u"abc", 2), NSString(u"ab"));
    EXPECT_EQ(qrvSubstringToIndex(u"abc", 0), NSString(u""));
}

TEST(Substrings, FromAnIndexBeyondTheEndIsEmpty) {
    EXPECT_EQ(qrvSubstringFromIndex(u"abc", 1), NSString(u"bc"));
    EXPECT_EQ(qrvSubstringFromIndex(u"abc", 3), NSString(u""));
    EXPECT_EQ(qrvSubstringFromIndex(u"abc", 99), NSString(u""));
}

TEST(Substrings, ToAComposedIndexNeverCutsACharacter) {
    const NSString text = joined({u"ae\u0301", thumb, u"z"});
    EXPECT_EQ(qrvSubstringToComposedIndex(text, 1), NSString(u"a"));
    EXPECT_EQ(qrvSubstringToComposedIndex(text, 2), NSString(u"a"));
    for (std::size_t i = 3; i < 7; ++i)
        EXPECT_EQ(qrvSubstringToComposedIndex(text, i), NSString(u"ae\u0301"));
    EXPECT_EQ(qrvSubstringToComposedIndex(text, 7), joined({u"ae\u0301", thumb}));
    EXPECT_EQ(qrvSubstringToComposedIndex(text, 8), text);
}

TEST(Substrings, ChoppingTakesTheLastUnit) {
    EXPECT_EQ(qrvStringByChopping(u"abc"), NSString(u"ab"));
    EXPECT_EQ(qrvStringByChopping(u"a"), NSString(u""));
    EXPECT_EQ(qrvStringByChopping(u""), NSString(u""));
}

TEST(Substrings, ChoppingAComposedCharacterTakesAWholeEmoji) {
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(u"x"), NSString(u""));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(u""), NSString(u""));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(u"ab"), NSString(u"a"));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(joined({u"a", u"😀"})), NSString(u"a"));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(joined({u"a", family})), NSString(u"a"));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(joined({u"a", thumb})), NSString(u"a"));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(flags), NSString(u"🇩🇪"));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(u"ae\u0301\u0323"), NSString(u"a"));
    EXPECT_EQ(qrvStringByChoppingComposedCharacter(std::u16string_view(u"a\xD800", 2)), NSString(u"a"));
}

TEST(Substrings, TruncatingTheMiddle) {
    EXPECT_EQ(qrvStringByTruncatingMiddleAfterComposedLength(u"abcdefgh", 3), NSString(u"abc…fgh"));
    EXPECT_EQ(qrvStringByTruncatingMiddleAfterComposedLength(u"abcdef", 3), NSString(u"abcdef"));
    EXPECT_EQ(qrvStringByTruncatingMiddleAfterComposedLength(u"abcdefg", 3), NSString(u"abc…efg"));
    EXPECT_EQ(qrvStringByTruncatingMiddleAfterComposedLength(u"abc", 0), NSString(u"…"));
    EXPECT_EQ(qrvStringByTruncatingMiddleAfterComposedLength(u"", 0), NSString(u""));
    EXPECT_EQ(qrvStringByTruncatingMiddleAfterComposedLength(u"abc", static_cast<std::size_t>(-1)),
              NSString(u"abc"));
}

TEST(Substrings, TruncatingTheMiddleKeepsFewerUnitsWhereACharacterStraddlesTheBoundary) {
    const NSString text = joined({u"ab", thumb, u"cdef", thumb, u"yz"});
    EXPECT_EQ(qrvStringByTruncatingMiddleAfterComposedLength(text, 3), NSString(u"ab…yz"));
}

TEST(Substrings, ARangeIsWidenedToWholeCharacters) {
    const NSString text = joined({u"a", thumb, u"e\u0301", u"z"});
    EXPECT_EQ(qrvRangeOfComposedCharacterSequencesInRange(text, {2, 4}), (NSRange{1, 6}));
    EXPECT_EQ(qrvRangeOfComposedCharacterSequencesInRange(text, {0, 1}), (NSRange{0, 1}));
    EXPECT_EQ(qrvRangeOfComposedCharacterSequencesInRange(text, {0, 8}), (NSRange{0, 8}));
}

TEST(Substrings, AZeroLengthWidensAroundTheUnitBefore) {
    const NSString text = joined({u"a", thumb, u"z"});
    EXPECT_EQ(qrvRangeOfComposedCharacterSequencesInRange(text, {1, 0}), (NSRange{1, 0}));
    EXPECT_EQ(qrvRangeOfComposedCharacterSequencesInRange(text, {3, 0}), (NSRange{1, 4}));
}

TEST(Substrings, ARangeThatIsNotInsideRaisesARangeException) {
    for (const NSRange range :
         {NSRange{3, 0}, NSRange{2, 2}, NSRange{0, static_cast<std::size_t>(-1)}, NSRange{0, 0}}) {
        try {
            qrvRangeOfComposedCharacterSequencesInRange(u"abc", range);
            ADD_FAILURE() << NSStringFromRange(range).utf8();
        } catch (const NSException& e) {
            EXPECT_EQ(e.name(), NSString(NSRangeException));
            EXPECT_EQ(e.reason(), NSString::stringWithFormat(u"Invalid range %@.", NSStringFromRange(range)));
        }
    }
    EXPECT_THROW(qrvRangeOfComposedCharacterSequencesInRange(u"", {0, 0}), NSException);
}

TEST(StemTrimming, DropsWholeCharactersMeasuredDecomposed) {
    // Decomposed "Résumé draft" has 14 units.
    EXPECT_EQ(qrvStringByAddingSuffix_trimmingStemToTotal(u"Résumé draft", u".pdf", 18),
              NSString(u"Résumé draft.pdf"));
    const NSString trimmed = qrvStringByAddingSuffix_trimmingStemToTotal(u"Résumé draft", u".pdf", 10);
    EXPECT_EQ(trimmed, NSString(u"Résum.pdf"));
    EXPECT_LE(trimmed.decomposedStringWithCanonicalMapping().length(), 10u);
    EXPECT_EQ(qrvStringByAddingSuffix_trimmingStemToTotal(u"Résumé", u"", 7), NSString(u"Résum"));
}

TEST(StemTrimming, AgreesWithTakingOneCharacterAfterAnother) {
    const NSString stem =
        joined({u"Zu\u0308rich ", family, u" 각", flags, u"e\u0301\u0323", u"가\u11A8", thumb});
    const NSString suffix = u".ü";
    for (unsigned long total = 3; total < 60; ++total) {
        NSString expected = stem;
        const auto length = [](const NSString& s) {
            return s.decomposedStringWithCanonicalMapping().length();
        };
        while (length(expected) + length(suffix) > total)
            expected = qrvStringByChoppingComposedCharacter(expected);
        EXPECT_EQ(qrvStringByAddingSuffix_trimmingStemToTotal(stem, suffix, total),
                  expected.stringByAppendingString(suffix));
    }
}

TEST(StemTrimming, ASuffixWhoseDecompositionAloneIsTooLongIsTheWholeResult) {
    EXPECT_EQ(qrvStringByAddingSuffix_trimmingStemToTotal(u"stem", u"ü", 1), NSString(u"ü"));
    EXPECT_EQ(qrvStringByAddingSuffix_trimmingStemToTotal(u"stem", NSString(), 2), NSString(u"st"));
}

TEST(StemTrimming, ASuffixLongerThanTheTotalFailsAnAssertion) {
    SilentDelegate log;
    QRVFunctions::setLoggingDelegate(&log);
    try {
        qrvStringByAddingSuffix_trimmingStemToTotal(u"stem", u".html", 4);
        ADD_FAILURE();
    } catch (const QRVException& e) {
        EXPECT_EQ(e.name(), NSString(QRVAssertionFailedException));
        EXPECT_EQ(e.qrvReason(), NSString(u"suffix: '.html' length: 4"));
    }
    QRVFunctions::setLoggingDelegate(nullptr);
    EXPECT_NE(log.last.rangeOfString(u"Assertion Failed: suffix: '.html' length: 4").location, NSNotFound);
}

TEST(StemTrimming, AStemOfTenMillionUnitsCostsNoMoreThanWhatIsKept) {
    std::u16string stem;
    for (int i = 0; i < 2'500'000; ++i) stem.append(u"🇩🇪");
    EXPECT_EQ(qrvStringByAddingSuffix_trimmingStemToTotal(stem, u".pdf", 255).length(), 252u + 4u - 4u);
    const NSString letters = std::u16string(10'000'000, u'\u00E9');
    EXPECT_EQ(qrvStringByAddingSuffix_trimmingStemToTotal(letters, u".pdf", 255).length(), 125u + 4u);
}

} // namespace qrv
