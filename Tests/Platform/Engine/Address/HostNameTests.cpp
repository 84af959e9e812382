#include "Platform/Engine/Address/HostName.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

TEST(HostName, IsInLowerCaseAndDecoded) {
    EXPECT_EQ(normalizedHost("Example.ORG"), "example.org");
    EXPECT_EQ(normalizedHost("ex%41mple"), "example");
    EXPECT_EQ(normalizedHost("a_b"), "a_b");
    EXPECT_EQ(normalizedHost("h."), "h.");
    EXPECT_EQ(normalizedHost("-a-"), "-a-");
    EXPECT_EQ(normalizedHost("a..b"), "a..b");
    EXPECT_EQ(normalizedHost("a b"), "a%20b");
    EXPECT_EQ(normalizedHost("a%20b"), "a%20b");
}

TEST(HostName, OfAnotherScriptGetsItsASCIIForm) {
    EXPECT_EQ(normalizedHost("m\xC3\xBCnchen.DE"), "xn--mnchen-3ya.de");
    EXPECT_EQ(normalizedHost("m%C3%BCnchen.de"), "xn--mnchen-3ya.de");
    EXPECT_EQ(normalizedHost("XN--mnchen-3ya.de"), "xn--mnchen-3ya.de");
    EXPECT_EQ(normalizedHost("fa\xC3\x9F.de"), "xn--fa-hia.de");
    EXPECT_EQ(normalizedHost("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x80\x82jp"), "xn--wgv71a119e.jp");
}

TEST(HostName, OfNumbersIsAnIPv4Address) {
    EXPECT_EQ(normalizedHost("127.0.0.1"), "127.0.0.1");
    EXPECT_EQ(normalizedHost("127.1"), "127.0.0.1");
    EXPECT_EQ(normalizedHost("0x7F.1"), "127.0.0.1");
    EXPECT_EQ(normalizedHost("127.0.0.1."), "127.0.0.1");
    EXPECT_EQ(normalizedHost("1.2.3.4.5"), std::nullopt);
    EXPECT_EQ(normalizedHost("a.256"), std::nullopt);
    EXPECT_EQ(normalizedHost("1.2.3.a"), "1.2.3.a");
}

TEST(HostName, InBracketsIsTheShortestIPv6Address) {
    EXPECT_EQ(normalizedHost("[2001:DB8:0:0::1]"), "[2001:db8::1]");
    EXPECT_EQ(normalizedHost("[1:0:0:0:0:0:0:8]"), "[1::8]");
    EXPECT_EQ(normalizedHost("[::FFFF:102:304]"), normalizedHost("[::ffff:1.2.3.4]"));
    EXPECT_EQ(normalizedHost("[::1"), std::nullopt);
    EXPECT_EQ(normalizedHost("[]"), std::nullopt);
    EXPECT_EQ(normalizedHost("["), std::nullopt);
    EXPECT_EQ(normalizedHost("[1::2::3]"), std::nullopt);
    EXPECT_EQ(normalizedHost("[fe80::1%eth0]"), std::nullopt);
}

TEST(HostName, MayNotHoldWhatEndsAHost) {
    for (const char* host : {"", "%", "a%2Fb", "a%40b", "a%3Ab", "a%00b", "a|b", "a<b", "a^b", "a\\b",
                             "a%7Fb", "%C2%AD", "a%FFb", "a]"}) {
        EXPECT_EQ(normalizedHost(host), std::nullopt) << host;
    }
}

TEST(HostName, WithoutEndIsNone) {
    EXPECT_EQ(normalizedHost(std::string(50'000'000, 'a')), std::nullopt);
    std::string foreign;
    for (int i = 0; i < 1'000; ++i) foreign += "\xE6\x97\xA5";
    EXPECT_EQ(normalizedHost(foreign), std::nullopt);
}

} // namespace
} // namespace qrv::engine
