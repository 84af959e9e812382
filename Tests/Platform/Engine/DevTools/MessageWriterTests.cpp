#include "Platform/Engine/DevTools/MessageWriter.h"

#include "Platform/Engine/DevTools/MessageReader.h"
#include "Tests/Platform/Engine/JsonText.h"

#include <gtest/gtest.h>
#include <limits>

using namespace std::string_literals;

namespace qrv::engine {
namespace {

std::string written(const Json& message) {
    std::string bytes;
    for (const NSData& piece : encodedMessage(message)) bytes += piece.bytes();
    return bytes;
}

/// An envelope of less than 256 bytes around a value.
std::string envelope(const std::string& contents) {
    return "\xd8\x18\x5a\0\0\0"s + static_cast<char>(contents.size()) + contents;
}

// The bytes are those that the engine's own encoder makes (crdtp's tests hold examples).
TEST(MessageWriter, WritesEveryKind) {
    const Json message =
        Json::object({{"a", nullptr}, {"b", true}, {"c", false}, {"d", "x"}, {"e", NSData("yz"s)}});
    EXPECT_EQ(written(message), envelope("\xbf"
                                         "\x61"
                                         "a\xf6"
                                         "\x61"
                                         "b\xf5"
                                         "\x61"
                                         "c\xf4"
                                         "\x61"
                                         "d\x61x"
                                         "\x61"
                                         "e\xd6\x42yz"
                                         "\xff"));
}

TEST(MessageWriter, WritesNumbers) {
    const Json message = Json::array({0, 23, 24, 256, 65536, 2147483647, -1, -24, -25, -2147483648LL, 0.5});
    EXPECT_EQ(written(message), envelope("\x9f\x00\x17\x18\x18\x19\x01\x00\x1a\x00\x01\x00\x00"
                                         "\x1a\x7f\xff\xff\xff\x20\x37\x38\x18\x3a\x7f\xff\xff\xff"
                                         "\xfb\x3f\xe0\x00\x00\x00\x00\x00\x00\xff"s));
}

TEST(MessageWriter, WhatIsNoIntegerOfTheEnginesIsADouble) {
    const std::string one = "\xfb\x41\xe0\x00\x00\x00\x00\x00\x00"s;
    EXPECT_EQ(written(Json::array({2147483648LL})), envelope("\x9f" + one + "\xff"));
}

TEST(MessageWriter, WritesNestedValuesInEnvelopesOfTheirOwn) {
    EXPECT_EQ(written(Json::object({{"a", Json::array({Json::object({})})}})),
              envelope("\xbf\x61"
                       "a" +
                       envelope("\x9f" + envelope("\xbf\xff") + "\xff") + "\xff"));
}

TEST(MessageWriter, WritesLongTextWithItsLength) {
    const std::string text(300, 'x');
    const std::string bytes = written(Json::object({{text, text}}));
    EXPECT_EQ(bytes, "\xd8\x18\x5a\0\0\x02\x60\xbf\x79\x01\x2c"s + text + "\x79\x01\x2c"s + text + "\xff");
}

TEST(MessageWriter, SharesLargeData) {
    const NSData large(std::string(100'000, 'x'));
    const auto pieces = encodedMessage(Json::object({{"a", large}, {"b", "text"}, {"c", large}}));
    ASSERT_EQ(pieces.size(), 5u);
    EXPECT_EQ(pieces[1].bytes().data(), large.bytes().data());
    EXPECT_EQ(pieces[3].bytes().data(), large.bytes().data());
    const Json back =
        *decodedMessage(NSData(written(Json::object({{"a", large}, {"b", "text"}, {"c", large}}))));
    EXPECT_TRUE(back["a"].data() == large);
    EXPECT_EQ(back["b"].string(), "text");
}

TEST(MessageWriter, WhatIsWrittenIsReadAgain) {
    const char* text =
        R"({"id":7,"big":1e300,"long":9007199254740993,"list":[[],{},"",0,-7,1.25,true,null,"üñ日"]})";
    const auto back = decodedMessage(NSData(written(parseJson(text))));
    ASSERT_TRUE(back);
    EXPECT_EQ((*back)["long"].number(), 9007199254740992.0); // a double holds no more
    EXPECT_EQ(jsonText((*back)["list"]), jsonText(parseJson(text)["list"]));
    EXPECT_EQ((*back)["big"].number(), 1e300);
}

} // namespace
} // namespace qrv::engine
