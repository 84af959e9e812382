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

} // namespace
} // namespace qrv
