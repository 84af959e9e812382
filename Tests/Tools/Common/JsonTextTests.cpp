#include "Source/Tools/Common/JsonText.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

TEST(JsonText, WritesEveryKindInOrder) {
    EXPECT_EQ(jsonText({}), "{}");
    EXPECT_EQ(jsonText({{{"b", std::int64_t{-7}},
                         {"a", std::string("x")},
                         {"none", std::monostate()},
                         {"yes", true},
                         {"list", std::vector<JsonObject>{{}, {{{"in", false}}}}}}}),
              R"({"b":-7,"a":"x","none":null,"yes":true,"list":[{},{"in":false}]})");
}

TEST(JsonText, IsPrintableASCII) {
    EXPECT_EQ(jsonText({{{"a", std::string("\"\\\x1b\n\x7f\xc2\x9b\xc3\xa4\xf0\x9f\x98\x80\xff")}}}),
              R"({"a":"\"\\\u001b\n\u007f\u009b\u00e4\ud83d\ude00\ufffd"})");
}

TEST(JsonText, IsReadAgain) {
    const std::string text =
        R"({"b":-7,"a":"\u00e4\ud83d\ude00","none":null,"yes":true,"list":[{},{"in":false}]})";
    const std::optional<JsonObject> object = objectOfJson(text);
    ASSERT_TRUE(object);
    EXPECT_EQ(jsonText(*object), text);
    EXPECT_EQ(object->value<std::int64_t>("b"), -7);
    EXPECT_EQ(object->value<std::string>("a"), "ä😀");
    EXPECT_EQ(object->value<std::string>("b"), std::nullopt);
    EXPECT_EQ(object->value<std::string>("z"), std::nullopt);
}

TEST(JsonText, WhatIsNoObjectOfItsKindsIsNothing) {
    for (const char* text : {"", "{", "[]", "1", "{} {}", R"({"a":1.5})", R"({"a":[1]})", R"({"a":{}})",
                             R"({"a":99999999999999999999})", R"({"a":"\ud800"})", "{\"a\":\"\xff\"}"})
        EXPECT_FALSE(objectOfJson(text)) << text;
    EXPECT_FALSE(objectOfJson(std::string(100'000, '[')));
}

} // namespace
} // namespace qrv
