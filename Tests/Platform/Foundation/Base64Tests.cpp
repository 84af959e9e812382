#include "Platform/Foundation/Base64.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

struct Pair {
    std::string bytes;
    std::string text;
};

void PrintTo(const Pair& pair, std::ostream* out) {
    *out << testing::PrintToString(pair.bytes);
}

class Base64 : public testing::TestWithParam<Pair> {};

} // namespace

TEST_P(Base64, EncodesAndDecodes) {
    EXPECT_EQ(base64Encode(GetParam().bytes), GetParam().text);
    EXPECT_EQ(base64Decode(GetParam().text), GetParam().bytes);
}

// The vectors of RFC 4648, and one with all the letters that are neither letters nor digits.
INSTANTIATE_TEST_SUITE_P(Vectors, Base64,
                         testing::Values(Pair{"", ""}, Pair{"f", "Zg=="}, Pair{"fo", "Zm8="},
                                         Pair{"foo", "Zm9v"}, Pair{"foob", "Zm9vYg=="},
                                         Pair{"fooba", "Zm9vYmE="}, Pair{"foobar", "Zm9vYmFy"},
                                         Pair{"\xFB\xFF\xFE", "+//+"}));

TEST(Base64Decoding, PassesOverWhiteSpaceAndMissingPadding) {
    EXPECT_EQ(base64Decode(" Z g\n=\t=\r"), "f");
    EXPECT_EQ(base64Decode("Zg"), "f");
    EXPECT_EQ(base64Decode("Zm8"), "fo");
}

TEST(Base64Decoding, RefusesWhatDoesNotBelong) {
    for (const char* text :
         {"Z", "Zm9vY", "Zg===", "Zm9v=", "=", "Zg=g", "Zg==Zg==", "Zm-_", "Z\xE9==", "Zm8\v"}) {
        EXPECT_FALSE(base64Decode(text)) << text;
    }
}

} // namespace qrv
