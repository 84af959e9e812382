#include "Platform/Foundation/Unicode.h"

#include <gtest/gtest.h>

namespace qrv::unicode {
namespace {

TEST(DomainNames, OfASCIIGetSmallLettersOnly) {
    EXPECT_EQ(domainToASCII("Example.ORG"), "example.org");
    EXPECT_EQ(domainToASCII("-a-..xn--a"), "-a-..xn--a");
    EXPECT_EQ(domainToASCII(""), "");
    EXPECT_EQ(domainToASCII(std::string(100'000, 'A')), std::string(100'000, 'a'));
}

TEST(DomainNames, OfOtherScriptsGetTheirASCIIForm) {
    EXPECT_EQ(domainToASCII("www.M\xC3\x9CNCHEN.de"), "www.xn--mnchen-3ya.de");
    EXPECT_EQ(domainToASCII("mu\xCC\x88nchen.de"), "xn--mnchen-3ya.de");
    EXPECT_EQ(domainToASCII("fa\xC3\x9F.de"), "xn--fa-hia.de");
    EXPECT_EQ(domainToASCII("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x80\x82jp"), "xn--wgv71a119e.jp");
    EXPECT_EQ(domainToASCII("\xEF\xBC\xA1.b"), "a.b");
    EXPECT_EQ(domainToASCII("-\xC3\xA9-"), "xn-----bja");
}

TEST(DomainNames, OfCharactersThatNoneMayHoldAreNone) {
    EXPECT_EQ(domainToASCII("a\xFF.de"), std::nullopt);
    EXPECT_EQ(domainToASCII("a\xE2\x80\x8D.de"), std::nullopt);
    EXPECT_EQ(domainToASCII("\xEF\xBF\xBD"), std::nullopt);
}

TEST(DomainNames, LongerThanAnyAreNone) {
    std::string longest;
    for (int i = 0; i < 512; ++i) longest += "\xC3\xA9";
    EXPECT_TRUE(domainToASCII(longest));
    EXPECT_EQ(domainToASCII(longest + "a"), std::nullopt);
    std::string enormous;
    for (int i = 0; i < 1'000'000; ++i) enormous += "\xE6\x97\xA5";
    EXPECT_EQ(domainToASCII(enormous), std::nullopt);
}

} // namespace
} // namespace qrv::unicode
