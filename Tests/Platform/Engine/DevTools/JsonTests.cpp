#include "Platform/Engine/DevTools/Json.h"

#include "Tests/Platform/Engine/JsonText.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace qrv::engine {
namespace {

TEST(Json, ReadsEveryKind) {
    const Json json = parseJson(R"({"n":null,"t":true,"i":-7,"d":2.5,"s":"x","a":[1,2],"o":{"k":"v"}})");
    EXPECT_TRUE(json.isObject());
    EXPECT_EQ(json.size(), 7u);
    EXPECT_TRUE(json["n"].isNull());
    EXPECT_TRUE(json["t"].boolean());
    EXPECT_EQ(json["i"].integer(), -7);
    EXPECT_EQ(json["i"].number(), -7.0);
    EXPECT_EQ(json["d"].number(), 2.5);
    EXPECT_EQ(json["s"].string(), "x");
    EXPECT_EQ(json["a"][1].integer(), 2);
    EXPECT_EQ(json["o"]["k"].stringView(), "v");
}

TEST(Json, MissingMembersReadAsNullThroughChains) {
    const Json json = parseJson(R"({"a":[1]})");
    EXPECT_TRUE(json["x"]["y"][3]["z"].isNull());
    EXPECT_TRUE(json["a"][1].isNull());
    EXPECT_TRUE(json["a"]["key of an array"].isNull());
    EXPECT_FALSE(json.contains("x"));
    EXPECT_TRUE(json.contains("a"));
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

TEST(Json, BuildsNestedValues) {
    Json json = Json::object(
        {{"a", 1}, {"b", "x"}, {"c", Json::array({1, "two", nullptr, true})}, {"d", Json::object({})}});
    EXPECT_EQ(jsonText(json), R"({"a":1,"b":"x","c":[1,"two",null,true],"d":{}})");
    EXPECT_EQ(jsonText(Json()), "null");
}

TEST(Json, TheLastOfEqualKeysCounts) {
    EXPECT_EQ(Json::object({{"a", 1}, {"a", 2}})["a"].integer(), 2);
}

TEST(Json, HoldsNumbersAsTheyAre) {
    const Json json = Json::array(
        {0.1, 4.0, std::numeric_limits<std::int64_t>::max(), -1, std::nan(""), HUGE_VAL, -0x1p63, 0x1p63});
    EXPECT_EQ(json[0].number(), 0.1);
    EXPECT_EQ(json[0].integer(-2), -2);
    EXPECT_EQ(json[1].integer(), 4);
    EXPECT_EQ(json[2].integer(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(json[3].integer(), -1);
    EXPECT_EQ(json[3].number(), -1.0);
    EXPECT_TRUE(json[4].isNull());
    EXPECT_TRUE(json[5].isNull());
    EXPECT_EQ(json[6].integer(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(json[7].integer(-2), -2);
}

TEST(Json, SharesItsData) {
    const NSData bytes(std::string("\0\xff", 2));
    const Json json = Json::object({{"data", bytes}});
    EXPECT_TRUE(json["data"].isData());
    EXPECT_EQ(json["data"].data().bytes().data(), bytes.bytes().data());
    EXPECT_EQ(json["data"].string("none"), "none");
    EXPECT_TRUE(json["other"].data().isNil());
    EXPECT_TRUE(Json(NSData()).isNull());
}

TEST(Json, IteratesInOrder) {
    const Json json = parseJson(R"({"m":[3,"a",[]]})");
    std::string seen;
    for (const Json& element : json["m"].elements()) seen += jsonText(element) + ";";
    EXPECT_EQ(seen, "3;\"a\";[];");
}

TEST(Json, APartOutlivesItsDocument) {
    Json part;
    {
        const Json json = parseJson(R"({"a":{"b":"kept"}})");
        part = json["a"];
    }
    EXPECT_EQ(part["b"].string(), "kept");
}

TEST(Json, PartsOfATemporaryValueAreCopies) {
    std::string seen;
    for (const Json& element : parseJson(R"([3,"a"])").elements()) seen += jsonText(element);
    for (const auto& [key, member] : parseJson(R"({"b":4})").members()) seen += key + jsonText(member);
    EXPECT_EQ(seen, "3\"a\"b4");
}

TEST(Json, IsReadFromSeveralThreads) {
    const Json json = parseJson(R"({"a":[1,2,3]})");
    std::int64_t sums[2] = {0, 0};
    auto read = [&json](std::int64_t& sum) {
        for (int round = 0; round < 1000; ++round)
            for (const Json& element : json["a"].elements()) sum += element.integer();
    };
    std::thread other(read, std::ref(sums[0]));
    read(sums[1]);
    other.join();
    EXPECT_EQ(sums[0], 6000);
    EXPECT_EQ(sums[1], 6000);
}

} // namespace
} // namespace qrv::engine
