#include "Platform/Engine/DevTools/Json.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace qrv::engine {
namespace {

TEST(Json, ReadsEveryKind) {
    auto json = Json::parse(R"({"n":null,"t":true,"i":-7,"d":2.5,"s":"x","a":[1,2],"o":{"k":"v"}})");
    ASSERT_TRUE(json);
    EXPECT_TRUE(json->isObject());
    EXPECT_EQ(json->size(), 7u);
    EXPECT_TRUE((*json)["n"].isNull());
    EXPECT_TRUE((*json)["t"].boolean());
    EXPECT_EQ((*json)["i"].integer(), -7);
    EXPECT_EQ((*json)["i"].number(), -7.0);
    EXPECT_EQ((*json)["d"].number(), 2.5);
    EXPECT_EQ((*json)["s"].string(), "x");
    EXPECT_EQ((*json)["a"][1].integer(), 2);
    EXPECT_EQ((*json)["o"]["k"].stringView(), "v");
}

TEST(Json, MissingMembersReadAsNullThroughChains) {
    auto json = Json::parse(R"({"a":[1]})");
    ASSERT_TRUE(json);
    EXPECT_TRUE((*json)["x"]["y"][3]["z"].isNull());
    EXPECT_TRUE((*json)["a"][1].isNull());
    EXPECT_TRUE((*json)["a"]["key of an array"].isNull());
    EXPECT_FALSE(json->contains("x"));
    EXPECT_TRUE(json->contains("a"));
}

TEST(Json, FallbacksStandInForOtherKinds) {
    Json text("12");
    EXPECT_EQ(text.number(4), 4);
    EXPECT_EQ(text.integer(5), 5);
    EXPECT_TRUE(text.boolean(true));
    EXPECT_EQ(Json(12).string("none"), "none");
    EXPECT_EQ(Json(12).stringView(), "");
    EXPECT_EQ(Json(1.5).integer(-1), -1);
    EXPECT_EQ(Json(1e300).integer(-1), -1);
    EXPECT_EQ(Json(12).size(), 0u);
    EXPECT_TRUE(Json(12).elements().empty());
}

TEST(Json, RefusesMalformedText) {
    for (const char* text : {"", "{", "[1,]", "{\"a\":}", "nul", "\"", "1 2", "{\"a\":1}}", "\"\\u12\"",
                             "\"\\ud83d", "\"\\ud83d\\"})
        EXPECT_FALSE(Json::parse(text)) << text;
}

TEST(Json, RefusesNumbersBeyondADoublesRange) {
    EXPECT_FALSE(Json::parse("1e309"));
    EXPECT_FALSE(Json::parse(R"({"a":[1,{"b":-1e999}]})"));
    EXPECT_TRUE(Json::parse(R"({"a":[1e308,{"b":-1e-999}]})"));
}

TEST(Json, RefusesWhatIsNestedTooDeep) {
    auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(Json::parse(nested(Json::maxDepth)));
    EXPECT_FALSE(Json::parse(nested(Json::maxDepth + 1)));
    EXPECT_FALSE(Json::parse(nested(1'000'000)));
}

TEST(Json, SurrogatePairsBecomeOneCharacter) {
    auto json = Json::parse(R"("\ud83d\ude00")");
    ASSERT_TRUE(json);
    EXPECT_EQ(json->string(), "\xF0\x9F\x98\x80");
}

TEST(Json, HalfSurrogatePairsBecomeReplacementCharacters) {
    auto json = Json::parse(
        R"({"lead":"a\ud83db","trail":"\uDE00","twice":"\ud83d\ud83d\ude00","escaped":"\\ud83d","end":"\ud83d"})");
    ASSERT_TRUE(json);
    EXPECT_EQ((*json)["lead"].string(), "a\xEF\xBF\xBD"
                                        "b");
    EXPECT_EQ((*json)["trail"].string(), "\xEF\xBF\xBD");
    EXPECT_EQ((*json)["twice"].string(), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
    EXPECT_EQ((*json)["escaped"].string(), "\\ud83d");
    EXPECT_EQ((*json)["end"].string(), "\xEF\xBF\xBD");
}

TEST(Json, BytesThatAreNotUtf8Pass) {
    auto json = Json::parse("\"a\xFF\"");
    ASSERT_TRUE(json);
    EXPECT_EQ(json->string(), "a\xFF");
}

TEST(Json, BuildsNestedValues) {
    Json json = Json::object(
        {{"a", 1}, {"b", "x"}, {"c", Json::array({1, "two", nullptr, true})}, {"d", Json::object({})}});
    EXPECT_EQ(json.serialize(), R"({"a":1,"b":"x","c":[1,"two",null,true],"d":{}})");
    EXPECT_EQ(Json().serialize(), "null");
}

TEST(Json, TheLastOfEqualKeysCounts) {
    EXPECT_EQ(Json::object({{"a", 1}, {"a", 2}}).serialize(), R"({"a":2})");
    EXPECT_EQ((*Json::parse(R"({"a":1,"a":2})"))["a"].integer(), 2);
}

TEST(Json, NumbersSurviveTheRoundTrip) {
    Json json = Json::array({0.1, 4.0 / 3.0, std::numeric_limits<std::int64_t>::max(), -1, std::nan("")});
    auto back = Json::parse(json.serialize());
    ASSERT_TRUE(back);
    EXPECT_EQ((*back)[0].number(), 0.1);
    EXPECT_EQ((*back)[1].number(), 4.0 / 3.0);
    EXPECT_EQ((*back)[2].integer(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ((*back)[3].integer(), -1);
    EXPECT_TRUE((*back)[4].isNull());
}

TEST(Json, StringsWithControlsAndZerosSurviveTheRoundTrip) {
    std::string text("a\0\n\"\\\x1f", 6);
    std::string serialized = Json(text).serialize();
    EXPECT_EQ(serialized.find('\0'), std::string::npos);
    EXPECT_EQ(Json::parse(serialized)->string(), text);
}

TEST(Json, IteratesInOrder) {
    auto json = Json::parse(R"({"m":[3,"a",[]]})");
    ASSERT_TRUE(json);
    std::string seen;
    for (const Json& element : (*json)["m"].elements()) seen += element.serialize() + ";";
    EXPECT_EQ(seen, "3;\"a\";[];");
}

TEST(Json, APartOutlivesItsDocument) {
    Json part;
    {
        auto json = Json::parse(R"({"a":{"b":"kept"}})");
        part = (*json)["a"];
    }
    EXPECT_EQ(part["b"].string(), "kept");
}

TEST(Json, IsReadFromSeveralThreads) {
    auto json = Json::parse(R"({"a":[1,2,3]})");
    ASSERT_TRUE(json);
    std::int64_t sums[2] = {0, 0};
    auto read = [&json](std::int64_t& sum) {
        for (int round = 0; round < 1000; ++round)
            for (const Json& element : (*json)["a"].elements()) sum += element.integer();
    };
    std::thread other(read, std::ref(sums[0]));
    read(sums[1]);
    other.join();
    EXPECT_EQ(sums[0], 6000);
    EXPECT_EQ(sums[1], 6000);
}

} // namespace
} // namespace qrv::engine
