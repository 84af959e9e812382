#include "Platform/Engine/Print/StyleText.h"

#include <gtest/gtest.h>
#include <limits>

namespace qrv::engine {
namespace {

TEST(StyleText, WritesLengthsWithoutExponentsOrTrailingZeros) {
    EXPECT_EQ(pixels(0), "0px");
    EXPECT_EQ(pixels(612), "612px");
    EXPECT_EQ(pixels(0.05), "0.05px");
    EXPECT_EQ(pixels(-12.5), "-12.5px");
    EXPECT_EQ(pixels(25'000'000), "25000000px");
    EXPECT_EQ(points(1.0 / 3), "0.333pt");
}

TEST(StyleText, WritesNumbersThatNoSheetCanHoldAsNearOnes) {
    EXPECT_EQ(number(1e300), "1000000000000000");
    EXPECT_EQ(number(-std::numeric_limits<double>::infinity()), "-1000000000000000");
    EXPECT_EQ(number(std::numeric_limits<double>::quiet_NaN()), "0");
}

TEST(StyleText, MakesEveryDeclarationImportant) {
    StyleRule rule("html");
    rule.add("width", "5px");
    rule.add("margin", "0 1px");
    EXPECT_EQ(rule.text(), "html{width:5px!important;margin:0 1px!important;}");
}

TEST(StyleText, PageRuleSetsTheSizeAndEmptiesTheMargins) {
    std::string text = pageRule("document:first", "10pt", "20pt", "3pt").text();
    EXPECT_TRUE(text.starts_with("@page document:first{size:10pt 20pt!important;margin:3pt!important;"))
        << text;
    EXPECT_NE(text.find("page-orientation:upright!important"), std::string::npos);
    EXPECT_NE(text.find("@top-center{content:none!important;}"), std::string::npos);
    EXPECT_NE(text.find("@bottom-left-corner{content:none!important;}"), std::string::npos);
}

TEST(StyleText, SheetTakesPageNamesAndTheViewsBackgroundsAway) {
    StyleSheet sheet;
    StyleRule rule("body");
    rule.add("color", "red");
    sheet.add(rule);
    EXPECT_EQ(sheet.text(),
              "*{page:auto!important;}*,::before,::after{transition:none!important;}"
              ":not(input,button,select,textarea,progress,meter),::before,::after{background-attachment:"
              "scroll!important;}"
              "body{color:red!important;}");
}

} // namespace
} // namespace qrv::engine
