#include "Platform/Engine/Address/RelativeURL.h"

#include "Platform/Engine/Address/ResourceURL.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

TEST(RelativeURL, IsResolvedInEveryForm) {
    constexpr const char* base = "http://user@h:8080/a/b/page.html?q=/x#f";
    for (const auto& [reference, expected] : {
             std::pair("c.png", "http://user@h:8080/a/b/c.png"),
             {"./c.png", "http://user@h:8080/a/b/c.png"},
             {"../c.png?x=../y", "http://user@h:8080/a/c.png?x=../y"},
             {"../../../c", "http://user@h:8080/c"},
             {"/c", "http://user@h:8080/c"},
             {"//g/c", "http://g/c"},
             {"https://g/c", "https://g/c"},
             {"?z", "http://user@h:8080/a/b/page.html?z"},
             {"#z", "http://user@h:8080/a/b/page.html?q=/x#z"},
             {"", "http://user@h:8080/a/b/page.html?q=/x"},
             {"..\\c\\d?\\", "http://user@h:8080/a/c/d?\\"},
             {" \n c\r\nd\t.png ", "http://user@h:8080/a/b/cd.png"},
             {"a b\xC3\xA9", "http://user@h:8080/a/b/a%20b%C3%A9"},
             {"data:text/css,a/../b", "data:text/css,a/../b"},
             {"c:d", "c:d"},
         }) {
        EXPECT_EQ(normalizedURL(resolvedURL(reference, base)), normalizedURL(expected)) << reference;
    }
}

TEST(RelativeURL, TheBaseMayHaveNoPath) {
    EXPECT_EQ(resolvedURL("c", "http://h"), "http://h/c");
    EXPECT_EQ(resolvedURL("?c", "http://h"), "http://h/?c");
    EXPECT_EQ(resolvedURL("c", "file:///a/b"), "file:///a/c");
    EXPECT_EQ(resolvedURL("c", "x-app:/a/b"), "x-app:/a/c");
}

TEST(RelativeURL, SomeTextsHaveNoAddressForOthers) {
    for (const char* base : {"", "about:blank", "data:text/html,x", "page.html"}) {
        EXPECT_EQ(resolvedURL("c", base), "") << base;
        EXPECT_EQ(resolvedURL("/c", base), "") << base;
        EXPECT_EQ(resolvedURL("http://h/", base), "http://h/") << base;
    }
    EXPECT_EQ(resolvedURL("#c", "about:blank"), "about:blank#c");
    EXPECT_EQ(resolvedURL("#c", ""), "");
}

} // namespace
} // namespace qrv::engine
