#include "Source/Tools/webarchive/Extract/StyleText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

std::vector<std::string> referencesIn(std::string_view style) {
    std::vector<std::string> found;
    const std::string copy = withStyleReferences(style, [&](const std::string& reference) {
        found.push_back(reference);
        return std::optional<std::string>();
    });
    EXPECT_EQ(copy, style);
    return found;
}

std::string rewritten(std::string_view style) {
    return withStyleReferences(style, [](const std::string&) { return std::optional<std::string>("X"); });
}

TEST(StyleText, AddressesAreReferences) {
    EXPECT_EQ(rewritten("a{b:url(c.png)}"), "a{b:url(X)}");
    EXPECT_EQ(rewritten("a{b:URL( \"c.png\" ) d}"), "a{b:URL( \"X\" ) d}");
    EXPECT_EQ(rewritten("a{b:url('c)d')}"), "a{b:url('X')}");
    EXPECT_EQ(rewritten("a{b:url(\n c \n)}"), "a{b:url(\n X \n)}");
    EXPECT_EQ(rewritten("src:url(a.eot?#iefix) format(\"embedded-opentype\"),url(b)"),
              "src:url(X) format(\"embedded-opentype\"),url(X)");
}

TEST(StyleText, ImportsAreReferences) {
    EXPECT_EQ(rewritten("@charset \"utf-8\";@import \"a.css\" screen;@import 'b';@IMPORT url(c);"),
              "@charset \"utf-8\";@import \"X\" screen;@import 'X';@IMPORT url(X);");
    EXPECT_EQ(rewritten("@import/**/\"a.css\"; b::before{content:\"c\"}"),
              "@import/**/\"X\"; b::before{content:\"c\"}");
}

TEST(StyleText, ImageSetsHaveReferences) {
    EXPECT_EQ(rewritten("a:image-set(\"b\" 1x, url(\"c\") 2x, 'd' type(\"image/png\") 3x); content:\"e\""),
              "a:image-set(\"X\" 1x, url(\"X\") 2x, 'X' type(\"image/png\") 3x); content:\"e\"");
    EXPECT_EQ(rewritten("a:-webkit-image-set(url(b) 1x, \"c\" 2x) \"d\""),
              "a:-webkit-image-set(url(X) 1x, \"X\" 2x) \"d\"");
}

TEST(StyleText, EscapesAreRead) {
    EXPECT_THAT(referencesIn(R"(url(a\(b\).png) url("\63 \"\000064 e\
f"))"),
                testing::ElementsAre("a(b).png", "c\"def"));
}

TEST(StyleText, EverythingElseStays) {
    for (const char* style : {"", "/* url(a) */", "\"url(a)\"", "'@import \"a\"'", "my-url(a)", "urls(a)",
                              "content: \"a\"", "/* url(a)", "@importer \"a\"", "@import;\"a\"",
                              "\"\\\"url(a)\"", "@media print{a{content:'b'}}"}) {
        EXPECT_THAT(referencesIn(style), testing::IsEmpty()) << style;
    }
}

TEST(StyleText, BrokenStylesEndWithTheText) {
    for (const char* style : {"url(", "url( ", "url(\"", "url(\"a", "url('a\nb", "@import \"a", "\\", "a\\",
                              "\"\\", "url(\\", "image-set(", "image-set(\"", "/*", "@"}) {
        referencesIn(style);
    }
    EXPECT_EQ(rewritten("url(a"), "url(X");
    EXPECT_EQ(rewritten("url(\"a\nurl(b)"), "url(\"a\nurl(X)");
}

} // namespace
} // namespace qrv::webarchive
