#include "Platform/Engine/DevTools/MessageReader.h"

#include "Tests/Platform/Engine/JsonText.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace qrv::engine {
namespace {

std::string envelope(const std::string& contents) {
    const auto size = contents.size();
    return "\xd8\x18\x5a"s + static_cast<char>(size >> 24) + static_cast<char>(size >> 16) +
           static_cast<char>(size >> 8) + static_cast<char>(size) + contents;
}

/// The value as the only one of a list, and as text; "none" when that is no message.
std::string read(const std::string& value) {
    const auto message = decodedMessage(NSData(envelope("\x9f" + value + "\xff")));
    return message ? jsonText((*message)[0]) : "none";
}

TEST(MessageReader, ReadsEveryKind) {
    const auto message = decodedMessage(NSData(envelope("\xbf\x61"
                                                        "a\xf6\x61"
                                                        "b\xf5\x61"
                                                        "c\xf4\x61"
                                                        "d\x61x\x61"
                                                        "e\xd6\x42yz\x61"
                                                        "f" +
                                                        envelope("\x9f\x07\x26\xff") + "\xff")));
    ASSERT_TRUE(message);
    EXPECT_EQ(jsonText(*message), R"({"a":null,"b":true,"c":false,"d":"x","e":"eXo=","f":[7,-7]})");
    EXPECT_EQ((*message)["e"].data().bytes(), "yz");
}

TEST(MessageReader, ReadsNumbersOfEverySize) {
    EXPECT_EQ(read("\x00"s), "0");
    EXPECT_EQ(read("\x17"), "23");
    EXPECT_EQ(read("\x18\xff"), "255");
    EXPECT_EQ(read("\x19\xff\xff"), "65535");
    EXPECT_EQ(read("\x1a\xff\xff\xff\xff"), "4294967295");
    EXPECT_EQ(read("\x1b\x7f\xff\xff\xff\xff\xff\xff\xff"), "9223372036854775807");
    EXPECT_EQ(read("\x3b\x7f\xff\xff\xff\xff\xff\xff\xff"), "-9223372036854775808");
    EXPECT_EQ(read("\x1b\x80\0\0\0\0\0\0\0"s), "none");
    EXPECT_EQ(read("\xfb\x3f\xe0\0\0\0\0\0\0"s), "5E-1");
    EXPECT_EQ(read("\xfb\x7f\xf0\0\0\0\0\0\0"s), "null") << "infinity";
    EXPECT_EQ(read("\xfb\x7f\xf8\0\0\0\0\0\0"s), "null") << "not a number";
}

// Bytes without a tag: the engine writes text like this that is not ASCII.
TEST(MessageReader, ReadsTextInUTF16) {
    EXPECT_EQ(read("\x44\xe5\x65\x3d\x00"s), "\"日=\"");
    EXPECT_EQ(read("\x44\x3d\xd8\x00\xde"s), "\"😀\"");
    EXPECT_EQ(read("\x44\x3d\xd8\x61\x00"s), "\"\xEF\xBF\xBD"
                                             "a\"");
    EXPECT_EQ(read("\x42\x00\xde"s), "\"\xEF\xBF\xBD\"");
    EXPECT_EQ(read("\x40"), "\"\"");
    EXPECT_EQ(read("\x41\x00"s), "none");
}

TEST(MessageReader, KeepsTextThatIsNotUTF8) {
    const auto message = decodedMessage(NSData(envelope("\x9f\x62"
                                                        "a\xff\xff")));
    ASSERT_TRUE(message);
    EXPECT_EQ((*message)[0].string(), "a\xff");
}

TEST(MessageReader, SharesTheBytesOfItsMessage) {
    const NSData bytes(envelope("\x9f\xd6\x43"
                                "abc\xff"));
    const Json data = (*decodedMessage(bytes))[0];
    EXPECT_EQ(data.data().bytes(), "abc");
    EXPECT_EQ(data.data().bytes().data(), bytes.bytes().data() + 10);
}

TEST(MessageReader, WhatIsCutShortIsNoMessage) {
    const std::string whole = envelope("\xbf\x61"
                                       "a" +
                                       envelope("\x9f\x18\x20\xd6\x43"
                                                "abc\xff") +
                                       "\x61"
                                       "b\xfb\x3f\xe0\0\0\0\0\0\0\xff"s);
    ASSERT_TRUE(decodedMessage(NSData(whole)));
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(decodedMessage(NSData(whole.substr(0, size)))) << size;
    EXPECT_FALSE(decodedMessage(NSData(whole + "x")));
}

TEST(MessageReader, EnvelopesHoldWhatTheySay) {
    EXPECT_FALSE(decodedMessage(NSData(envelope(""))));
    EXPECT_FALSE(decodedMessage(NSData(envelope("\x9f\xff\xff"))));
    EXPECT_FALSE(decodedMessage(NSData("\x9f\xff"s)));
    EXPECT_EQ(read(envelope("\x9f\xff\xff")), "none");
    EXPECT_EQ(read("\xd8\x18\x5a\xff\xff\xff\xff\x9f\xff"), "none");
    EXPECT_EQ(read("\x9f\xff"), "none") << "without an envelope";
    EXPECT_EQ(read("\xbf\xff"), "none");
}

TEST(MessageReader, RefusesWhatTheEngineNeverSends) {
    for (const char* value : {"\x7f", "\x5f", "\x81\xf6", "\xa1\xf6\xf6", "\xc1\x61x", "\xd6\x61x", "\xf7",
                              "\xf9zz", "\xfazzzz", "\x1c", "\x1f", "\xd8\x17\x41x", "\xff"})
        EXPECT_EQ(read(value), "none") << value;
    EXPECT_FALSE(decodedMessage(NSData(envelope("\xbf\xf6\xf6\xff")))) << "a key that is no text";
    EXPECT_FALSE(decodedMessage(NSData(envelope("\xbf\x61"
                                                "a\xff"))))
        << "a key without a value";
    EXPECT_EQ(read("\x7b\xff\xff\xff\xff\xff\xff\xff\xff"), "none") << "a text without an end";
}

TEST(MessageReader, RefusesWhatIsNestedTooDeep) {
    const auto nested = [](int depth) {
        std::string bytes = envelope("\x9f\xff");
        while (--depth > 0) bytes = envelope("\x9f" + bytes + "\xff");
        return decodedMessage(NSData(bytes)).has_value();
    };
    EXPECT_TRUE(nested(512));
    EXPECT_FALSE(nested(513));
    EXPECT_FALSE(nested(20'000));
}

TEST(MessageReader, KnowsHowLongAMessageIs) {
    EXPECT_EQ(messageSize(envelope("\xbf\xff")), 9u);
    EXPECT_EQ(messageSize(envelope(std::string(70'000, 'x')).substr(0, messageHead)), 70'007u);
    EXPECT_EQ(messageSize("\xd8\x18\x5a\xff\xff\xff\xff"), 4294967302u);
    EXPECT_FALSE(messageSize("\xd8\x18\x5a\xff\xff\xff"));
    EXPECT_FALSE(messageSize("{\"id\":1}"));
}

} // namespace
} // namespace qrv::engine
