#include "Platform/Engine/Address/ResourceURL.h"

#include "Platform/Foundation/NSURL.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

struct Writing {
    const char* written;
    const char* normal;
};

void PrintTo(const Writing& writing, std::ostream* out) {
    *out << writing.written;
}

class NormalizedURL : public testing::TestWithParam<Writing> {};

TEST_P(NormalizedURL, IsTheSameForEveryWriting) {
    EXPECT_EQ(normalizedURL(GetParam().written), GetParam().normal);
}

TEST_P(NormalizedURL, IsItsOwn) {
    EXPECT_EQ(normalizedURL(GetParam().normal), GetParam().normal);
}

// Stored addresses have passed NSURL, those that the engine asks for have not.
TEST_P(NormalizedURL, IsTheSameForTheStoredAddress) {
    const NSURL stored = NSURL::URLWithString(NSString::fromUTF8(GetParam().written));
    EXPECT_EQ(normalizedURL(stored.absoluteString().utf8()), GetParam().normal);
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, NormalizedURL,
    testing::Values(Writing{"HTTP://Example.ORG", "http://example.org/"},
                    Writing{"http://h:80/", "http://h/"}, Writing{"http://h:8080/", "http://h:8080/"},
                    Writing{"https://h:443", "https://h/"}, Writing{"https://h:80", "https://h:80/"},
                    Writing{"http://h:/", "http://h/"}, Writing{"http://h:080/", "http://h/"},
                    Writing{"http://h:0/", "http://h:0/"}, Writing{"ws://h:80/x", "ws://h/x"},
                    Writing{"wss://h:443/x", "wss://h/x"}, Writing{"ftp://h:21/x", "ftp://h/x"},
                    Writing{"http://u:p@H:80/", "http://u:p@h/"}, Writing{"http://@h/", "http://h/"},
                    Writing{"http://:@h/", "http://h/"}, Writing{"http://u:@h/", "http://u@h/"},
                    Writing{"http://U@h/", "http://U@h/"}, Writing{"http://a@b@h/", "http://a%40b@h/"},
                    Writing{"http://\u00e9 x@h/", "http://%C3%A9%20x@h/"},
                    Writing{"http://[2001:DB8:0:0::1]:80/", "http://[2001:db8::1]/"},
                    Writing{"http://[::1]:8080", "http://[::1]:8080/"},
                    Writing{"http://0x7f.1/", "http://127.0.0.1/"},
                    Writing{"http://m\xC3\xBCnchen.DE/", "http://xn--mnchen-3ya.de/"},
                    Writing{"http://a b/", "http://a%20b/"}, Writing{"http:/h/a", "http://h/a"},
                    Writing{"http:h/a", "http://h/a"}, Writing{"http:///h/a", "http://h/a"},
                    Writing{"file:///a", "file:///a"}, Writing{"file:/a", "file:///a"},
                    Writing{"file://LOCALHOST/a", "file:///a"}, Writing{"file://Host/a", "file://host/a"}));

INSTANTIATE_TEST_SUITE_P(
    Paths, NormalizedURL,
    testing::Values(
        Writing{"http://h/a/./b/../c", "http://h/a/c"}, Writing{"http://h/a/%2e/b/%2E%2e/c", "http://h/a/c"},
        Writing{"http://h/a/.%2e/c", "http://h/c"}, Writing{"http://h/a/%2E./c", "http://h/c"},
        Writing{"http://h/a/..", "http://h/"}, Writing{"http://h/a/.", "http://h/a/"},
        Writing{"http://h/../../x", "http://h/x"}, Writing{"http://h/a//b/../c", "http://h/a//c"},
        Writing{"http://h/a/b/...", "http://h/a/b/..."}, Writing{"http://h/%2e%2e%2e", "http://h/%2e%2e%2e"},
        Writing{"http://h/a/%2e%2e%2fb", "http://h/a/%2e%2e%2fb"},
        Writing{"http://h/.a/..b", "http://h/.a/..b"}, Writing{"http://h?q", "http://h/?q"},
        Writing{"http://h#f", "http://h/#f"}, Writing{"http://h/a/?", "http://h/a/?"},
        Writing{"http://h/a b|c\"d", "http://h/a%20b%7Cc%22d"},
        Writing{"http://h/%41%7e%c3%a9\xC3\xA9 %E9", "http://h/%41%7e%c3%a9%C3%A9%20%E9"},
        Writing{"http://h/it's", "http://h/it's"}, Writing{"http://h/a;b=1,c", "http://h/a;b=1,c"},
        Writing{"http://h/%zz%", "http://h/%zz%"}, Writing{"http://h/%5Ca", "http://h/%5Ca"},
        Writing{"http://h/A/%2F", "http://h/A/%2F"}, Writing{"file:///a/../b", "file:///b"}));

INSTANTIATE_TEST_SUITE_P(Queries, NormalizedURL,
                         testing::Values(Writing{"http://h/?a/../b", "http://h/?a/../b"},
                                         Writing{"http://h/css?family=A|B", "http://h/css?family=A%7CB"},
                                         Writing{"http://h/?u=HTTP://X:80/%2e",
                                                 "http://h/?u=HTTP://X:80/%2e"},
                                         Writing{"http://h/?'a'#'b'", "http://h/?%27a%27#'b'"},
                                         Writing{"http://h/#a?b'", "http://h/#a?b'"},
                                         Writing{"http://h/?q#a/../b", "http://h/?q#a/../b"},
                                         Writing{"http://h/?a@b:c", "http://h/?a@b:c"},
                                         Writing{"http://h/#a#b", "http://h/#a#b"}));

INSTANTIATE_TEST_SUITE_P(
    OtherSchemes, NormalizedURL,
    testing::Values(Writing{"about:blank", "about:blank"}, Writing{"ABOUT:Blank", "about:Blank"},
                    Writing{"cid:Abc@X", "cid:Abc@X"}, Writing{"x-foo:bar/../b?q='", "x-foo:bar/../b?q='"},
                    Writing{"x-foo:/a/../b", "x-foo:/b"},
                    Writing{"X-Foo://Host:80/a/../b", "x-foo://Host:80/b"},
                    Writing{"x-foo://Host", "x-foo://Host"}, Writing{"data:,a b", "data:,a%20b"},
                    Writing{"a/b", "a/b"}, Writing{"//h/a/../b", "//h/b"}));

INSTANTIATE_TEST_SUITE_P(Malformed, NormalizedURL,
                         testing::Values(Writing{"http://H:99999/a", "http://h:99999/a"},
                                         Writing{"http://h:x/", "http://h:x/"},
                                         Writing{"http://", "http:///"},
                                         Writing{"http://[::1/", "http://[::1/"},
                                         Writing{"http://A%2Fb/../c", "http://a%2fb/c"}));

TEST(NormalizedURLText, BackslashesAreSlashesBeforeTheQuery) {
    EXPECT_EQ(normalizedURL("http:\\\\h\\a\\..\\b"), "http://h/b");
    EXPECT_EQ(normalizedURL("http://h/?a\\b"), "http://h/?a%5Cb");
    EXPECT_EQ(normalizedURL("x-foo://h/a\\b"), "x-foo://h/a%5Cb");
}

TEST(NormalizedURLText, EmptyStaysEmpty) {
    EXPECT_EQ(normalizedURL(""), "");
}

// Half a million characters, each of which would be looked at again by anything quadratic.
TEST(NormalizedURLText, TakesEnormousAddresses) {
    constexpr std::size_t length = 500'000;
    for (const char* piece : {"a", "/", "../", "a/../", "%2e/", "@", ":", "?", "#", "[", "'", "\\", "%"}) {
        std::string text = "http://";
        while (text.size() < length) text += piece;
        EXPECT_TRUE(normalizedURL(text).starts_with("http://")) << piece;
        text.replace(0, 7, "http://h/");
        EXPECT_TRUE(normalizedURL(text).starts_with("http://h/")) << piece;
    }
}

TEST(ResourceURL, SchemeIsInLowerCase) {
    EXPECT_EQ(schemeOf("HTTP://h"), "http");
    EXPECT_EQ(schemeOf("x-a+b.9:c"), "x-a+b.9");
    EXPECT_EQ(schemeOf("a/b:c"), "");
    EXPECT_EQ(schemeOf(":a"), "");
    EXPECT_EQ(schemeOf("1a:b"), "");
    EXPECT_EQ(schemeOf("http"), "");
    EXPECT_EQ(schemeOf(""), "");
}

TEST(ResourceURL, HTTPSchemesAreExchanged) {
    EXPECT_EQ(withOtherHTTPScheme("http://h/a"), "https://h/a");
    EXPECT_EQ(withOtherHTTPScheme("https://h/a"), "http://h/a");
    EXPECT_EQ(withOtherHTTPScheme("file:///a"), "");
    EXPECT_EQ(withOtherHTTPScheme(""), "");
}

TEST(StandInAddress, LeavesWhatTheEngineLoads) {
    for (const char* url : {"http://h/a#f", "https://u@H:8443/?q", "HTTP:h", "http://h:99999/"}) {
        const StandInAddress address(url, "token");
        EXPECT_EQ(address.engineURL(), url);
        EXPECT_EQ(address.storedURL("http://h/b"), "http://h/b");
        EXPECT_EQ(address.storedURL("http://token.example/b"), "http://token.example/b");
    }
}

TEST(ReadableURL, IsTheSameHoweverAnAddressIsWritten) {
    for (const auto& [one, other] : {
             std::pair("http://h/%7Ea%41", "http://h/~aA"),
             {"http://h/%c3%a4", "http://h/%C3%A4"},
             {"http://h/%C3%A4", "http://h/a%CC%88"},
             {"https://h/a#x", "http://h/a"},
             {"http://h/?a=%2b%5B", "http://h/?a=+["},
         }) {
        EXPECT_EQ(readableURL(one), readableURL(other)) << one;
    }
    for (const auto& [one, other] : {
             std::pair("http://h/a", "http://h/A"),
             {"http://h/?a", "http://h/?b"},
             {"http://h/a", "ftp://h/a"},
             {"http://h/%FF", "http://h/%FE"},
             {"http://h/a+b", "http://h/a%20b"},
         }) {
        EXPECT_NE(readableURL(one), readableURL(other)) << one;
    }
    EXPECT_EQ(readableURL(""), "");
}

TEST(StandInAddress, NamesTheBeginningsOfWhatLiesBesideIt) {
    using Stems = std::vector<std::string>;
    const auto stems = [](const char* url) { return StandInAddress(url, "token").stems(); };
    const Stems local{"file:///", "file://localhost/"};
    for (const char* url : {"file:///home/a.html", "file:/a", "file://localhost/a", "FILE:///a"}) {
        EXPECT_EQ(stems(url), local) << url;
    }
    EXPECT_EQ(stems("file://server/share/a"), Stems{"file://server/"});
    EXPECT_EQ(stems("odd://host/dir/a"), Stems{"odd://host/"});
    for (const char* url : {"http://a/", "about:blank", "", "cid:1", "x:/a"})
        EXPECT_EQ(stems(url), Stems()) << url;
    EXPECT_EQ(StandInAddress("odd://host/a", "token").prefix(), "http://token.example/");
}

TEST(StandInAddress, IsNeverTooLongForTheEngine) {
    for (const std::string start : {"http://a.example/", "file:///"}) {
        const std::string url = start + std::string(3'000'000, 'x');
        const StandInAddress address(url, "token");
        EXPECT_EQ(address.engineURL(), "http://token.example/");
        EXPECT_EQ(address.storedURL("http://token.example/#f"), url + "#f");
    }
    EXPECT_EQ(StandInAddress("http://a.example/" + std::string(800'000, '^'), "token").engineURL(),
              "http://token.example/");
    const std::string fits = "http://a.example/" + std::string(600'000, 'x');
    EXPECT_EQ(StandInAddress(fits, "token").engineURL(), fits);
}

struct StandIn {
    const char* stored;
    const char* engine;
    const char* asked;
    const char* mappedBack;
};

void PrintTo(const StandIn& standIn, std::ostream* out) {
    *out << standIn.stored << " " << standIn.asked;
}

class StandInAddresses : public testing::TestWithParam<StandIn> {};

TEST_P(StandInAddresses, AreMappedBack) {
    const StandInAddress address(GetParam().stored, "token");
    EXPECT_EQ(address.engineURL(), GetParam().engine);
    EXPECT_EQ(address.storedURL(address.engineURL()), GetParam().stored);
    EXPECT_EQ(address.storedURL(GetParam().asked), GetParam().mappedBack);
}

INSTANTIATE_TEST_SUITE_P(
    Table, StandInAddresses,
    testing::Values(
        StandIn{"about:blank", "http://token.example/blank", "http://token.example/blank#a", "about:blank#a"},
        StandIn{"", "http://token.example/", "http://token.example/#a", "#a"},
        // Relative to the page, to its root, with dots, to a fragment, to another host.
        StandIn{"x-foo://Host:1/d/p?q", "http://token.example/d/p?q", "http://token.example/d/a.css?v",
                "x-foo://Host:1/d/a.css?v"},
        StandIn{"x-foo://Host/d/p", "http://token.example/d/p", "http://token.example/a.css",
                "x-foo://Host/a.css"},
        StandIn{"x-foo://Host/d/p", "http://token.example/d/p", "http://token.example/d/p#f",
                "x-foo://Host/d/p#f"},
        StandIn{"x-foo://Host/d/p#f", "http://token.example/d/p#f", "http://token.example/d/p#g",
                "x-foo://Host/d/p#g"},
        StandIn{"x-foo://Host/d/p", "http://token.example/d/p", "http://other/a.css", "http://other/a.css"},
        StandIn{"x-foo://Host/d/p", "http://token.example/d/p", "http://token.example.org/a",
                "http://token.example.org/a"},
        StandIn{"x-foo://Host", "http://token.example/", "http://token.example/a", "x-foo://Host/a"},
        StandIn{"x-foo://Host?q", "http://token.example/?q", "http://token.example/a", "x-foo://Host/a"},
        StandIn{"x-foo:///d/p", "http://token.example/d/p", "http://token.example/d/a", "x-foo:///d/a"},
        StandIn{"x-foo:/d/p", "http://token.example/d/p", "http://token.example/a", "x-foo:/a"},
        StandIn{"x-foo:bar?q", "http://token.example/bar?q", "http://token.example/a", "x-foo:a"},
        StandIn{"cid:abc@x", "http://token.example/abc@x", "http://token.example/part2@x", "cid:part2@x"},
        StandIn{"X-Foo://h/a/../b", "http://token.example/b", "http://token.example/c", "X-Foo://h/c"},
        // No scheme begins with a digit.
        StandIn{"1a://h/p", "http://token.example/1a://h/p", "http://token.example/1a://h/a", "1a://h/a"},
        StandIn{"d/p", "http://token.example/d/p", "http://token.example/d/a", "d/a"},
        StandIn{"/d/p", "http://token.example/d/p", "http://token.example/a", "/a"},
        StandIn{"//h/d/p", "http://token.example/d/p", "http://token.example/a", "//h/a"},
        StandIn{"data:text/html,a", "http://token.example/text/html,a", "http://token.example/text/b",
                "data:text/b"},
        StandIn{"file:///d/p", "http://token.example/d/p", "http://token.example/a", "file:///a"},
        StandIn{"file://h/d/p", "http://token.example/d/p", "http://token.example/a", "file://h/a"},
        StandIn{"FILE:/d/p", "http://token.example/d/p", "http://token.example/a", "FILE:/a"}));

TEST(StandInAddress, StandsInForAnyWhenToldTo) {
    const StandInAddress address("https://h:99999/d/p?q#f", "token", StandInAddress::Use::always);
    EXPECT_EQ(address.engineURL(), "http://token.example/d/p?q#f");
    EXPECT_EQ(address.storedURL("http://token.example/d/p?q#g"), "https://h:99999/d/p?q#g");
    EXPECT_EQ(address.storedURL("http://token.example/a"), "https://h:99999/a");
}

} // namespace
} // namespace qrv::engine
