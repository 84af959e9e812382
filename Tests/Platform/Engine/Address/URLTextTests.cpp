#include "Platform/Engine/Address/URLText.h"

#include "Platform/Foundation/NSURL.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

TEST(URLText, LowersASCIILettersOnly) {
    EXPECT_EQ(lowered("AZ[az@\xC3\x84"), "az[az@\xC3\x84");
}

TEST(URLText, EscapesWhatNSURLEscapes) {
    std::string text = "\xC3\xA9";
    for (char c = ' '; c < 0x7F; ++c) text.push_back(c);
    EXPECT_EQ(percentEscaped(text), NSURL::URLWithString(NSString::fromUTF8(text)).absoluteString().utf8());
    EXPECT_EQ(percentEscaped(percentEscaped(text)), percentEscaped(text));
}

TEST(URLText, DecodesEscapesAndLeavesMalformedOnes) {
    EXPECT_EQ(percentDecoded("%41%c3%A9x"), "A\xC3\xA9x");
    EXPECT_EQ(percentDecoded("%zz%4%"), "%zz%4%");
    EXPECT_EQ(percentDecoded("%2541"), "%41");
    EXPECT_EQ(percentDecoded(""), "");
}

} // namespace
} // namespace qrv::engine
