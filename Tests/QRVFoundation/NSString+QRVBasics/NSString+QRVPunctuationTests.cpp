#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVPunctuation.h"

#include <gtest/gtest.h>

namespace qrv {

struct PunctuationCase {
    NSString (*make)();
    char16_t character;
};

void PrintTo(const PunctuationCase& test, std::ostream* out) {
    *out << testing::PrintToString(test.character);
}

class Punctuation : public testing::TestWithParam<PunctuationCase> {};

TEST_P(Punctuation, IsTheOneCharacter) {
    const NSString made = GetParam().make();
    ASSERT_EQ(made.length(), 1u);
    EXPECT_EQ(made.characterAtIndex(0), GetParam().character);
}

INSTANTIATE_TEST_SUITE_P(
    NSStringQRV, Punctuation,
    testing::Values(PunctuationCase{qrvEllipsis, 0x2026}, PunctuationCase{qrvEnDash, 0x2013},
                    PunctuationCase{qrvEmDash, 0x2014}, PunctuationCase{qrvLeftDoubleQuote, 0x201C},
                    PunctuationCase{qrvRightDoubleQuote, 0x201D}, PunctuationCase{qrvLeftSingleQuote, 0x2018},
                    PunctuationCase{qrvRightSingleQuote, 0x2019},
                    PunctuationCase{qrvLeftDoubleGuillemet, 0xAB},
                    PunctuationCase{qrvRightDoubleGuillemet, 0xBB},
                    PunctuationCase{qrvLeftSingleGuillemet, 0x2039},
                    PunctuationCase{qrvRightSingleGuillemet, 0x203A}));

TEST(NSStringQRVPunctuation, DoubleQuotedStringStandsBetweenTypographicQuotes) {
    EXPECT_EQ(qrvDoubleQuotedString(u"a"), NSString(u"\u201Ca\u201D"));
    EXPECT_EQ(qrvDoubleQuotedString(NSString()), NSString(u"\u201C\u201D"));
}

} // namespace qrv
