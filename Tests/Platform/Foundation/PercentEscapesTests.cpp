#include "Platform/Foundation/PercentEscapes.h"

#include "Platform/Foundation/NSURL.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

TEST(PercentEscapes, OfBytesAreOfWhatNoURLMayHold) {
    EXPECT_EQ(percentEscaped("aZ09-._~:/?#[]@!$&'()*+,;=%41"), "aZ09-._~:/?#[]@!$&'()*+,;=%41");
    EXPECT_EQ(percentEscaped(" \"<>\\^`{|}\x7F"), "%20%22%3C%3E%5C%5E%60%7B%7C%7D%7F");
    EXPECT_EQ(percentEscaped(std::string_view("\0\x1F\xC3\xA9\xFF", 5)), "%00%1F%C3%A9%FF");
    EXPECT_EQ(percentEscaped(""), "");
}

TEST(PercentEscapes, OfBytesAreThoseOfNSURL) {
    std::string text = "\xC3\xA9";
    for (char c = ' '; c < 0x7F; ++c) text.push_back(c);
    EXPECT_EQ(percentEscaped(text), NSURL::URLWithString(NSString::fromUTF8(text)).absoluteString().utf8());
    EXPECT_EQ(percentEscaped(percentEscaped(text)), percentEscaped(text));
}

TEST(PercentEscapes, OfBytesLeaveWhatIsToBeKept) {
    EXPECT_EQ(percentEscaped("a/b c?", "/"), "a/b%20c%3F");
    EXPECT_EQ(percentEscaped("a/%", ""), "a%2F%25");
}

TEST(PercentEscapes, AreDecodedOnceAndMalformedOnesStay) {
    EXPECT_EQ(percentDecoded("%41%c3%A9x"), "A\xC3\xA9x");
    EXPECT_EQ(percentDecoded("%zz%4%"), "%zz%4%");
    EXPECT_EQ(percentDecoded("%4%41%"), "%4A%");
    EXPECT_EQ(percentDecoded("%2541"), "%41");
    EXPECT_EQ(percentDecoded("%00"), std::string(1, '\0'));
    EXPECT_EQ(percentDecoded(""), "");
}

TEST(PercentEscapes, OfCharactersAreOfTheirUTF8) {
    const auto isLetter = [](char32_t c) { return c >= U'a' && c <= U'z'; };
    EXPECT_EQ(addPercentEscapes(u"a\u00E9\u6F22\U0001F600 b", isLetter),
              NSString(u"a%C3%A9%E6%BC%A2%F0%9F%98%80%20b"));
    EXPECT_EQ(addPercentEscapes(u"\u00E9", [](char32_t c) { return c == U'\u00E9'; }), NSString(u"\u00E9"));
    EXPECT_TRUE(addPercentEscapes({}, isLetter).isNil());
    EXPECT_TRUE(addPercentEscapes(std::u16string_view(u"a\xD800", 2), isLetter).isNil());
}

} // namespace
} // namespace qrv
