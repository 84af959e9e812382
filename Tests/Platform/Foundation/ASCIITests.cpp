#include "Platform/Foundation/ASCII.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

TEST(ASCII, TellsLettersAndDigits) {
    std::string letters;
    std::string digits;
    for (int i = -128; i < 128; ++i) {
        const auto c = static_cast<char>(i);
        if (isASCIILetter(c)) letters.push_back(c);
        if (isASCIIDigit(c)) digits.push_back(c);
        EXPECT_EQ(isASCIIAlphanumeric(c), isASCIILetter(c) || isASCIIDigit(c));
    }
    EXPECT_EQ(letters, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(digits, "0123456789");
    EXPECT_TRUE(isASCIILetter(u'z'));
    EXPECT_FALSE(isASCIILetter(u'\u00E4'));
    EXPECT_FALSE(isASCIIDigit(U'\U0001D7CE'));
}

TEST(ASCII, HexadecimalDigitsHaveValues) {
    const std::string_view digits = "0123456789abcdef";
    for (unsigned value = 0; value < 16; ++value) EXPECT_EQ(hexDigitValue(digits[value]), value);
    EXPECT_EQ(hexDigitValue(u'A'), 10u);
    EXPECT_EQ(hexDigitValue('F'), 15u);
    for (const char c : {'g', 'G', '/', ':', '@', '`', ' ', '\0', '\xC1'})
        EXPECT_EQ(hexDigitValue(c), std::nullopt);
}

TEST(ASCII, LowersLettersOnly) {
    EXPECT_EQ(lowered("AZ[az@09\xC3\x84"), "az[az@09\xC3\x84");
    EXPECT_EQ(lowered(""), "");
}

} // namespace
} // namespace qrv
