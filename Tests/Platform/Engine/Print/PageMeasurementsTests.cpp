#include "Platform/Engine/Print/PageMeasurements.h"

#include "Platform/Engine/DevTools/Json.h"
#include "Tests/Platform/Engine/JsonText.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::Contains;

PageMeasurements read(const char* answer) {
    return pageMeasurementsFromJson(parseJson(answer));
}

// That each field is read, and from which name, is tested with what the engine answers.

TEST(PageMeasurements, FieldsHaveNames) {
    for (const char* name : {"view.width", "structureCost", "root.border.left", "root.borderColor.top",
                             "body.exists", "canvas.ratios"}) {
        EXPECT_THAT(pageMeasurementNames(), Contains(name));
    }
}

TEST(PageMeasurements, WhatIsMissingOrOfAnotherKindHasItsInitialValue) {
    for (const char* answer : {"null", "[]", R"({"view":5,"root":[],"body":"x"})",
                               R"({"view":{"width":"wide"},"scroll":{"width":[1]},"body":{"exists":1},
                                   "root":{"zoom":true,"isHtml":"true"},"canvas":{"color":7}})"}) {
        const PageMeasurements m = read(answer);
        EXPECT_EQ(m.view.width, 16) << answer;
        EXPECT_EQ(m.scroll.width, 0);
        EXPECT_FALSE(m.root.isHtml);
        EXPECT_TRUE(m.root.heightIsAuto);
        EXPECT_EQ(m.root.zoom, 1);
        EXPECT_EQ(m.root.borderColor.top, "rgba(0, 0, 0, 0)");
        EXPECT_FALSE(m.body.exists);
        EXPECT_EQ(m.body.writingMode, "horizontal-tb");
        EXPECT_EQ(m.body.direction, "ltr");
        EXPECT_EQ(m.canvas.color, "rgba(0, 0, 0, 0)");
        EXPECT_EQ(m.canvas.size, "auto");
        EXPECT_EQ(m.canvas.ratios, "0");
        EXPECT_EQ(m.canvas.origin, "padding-box");
    }
}

TEST(PageMeasurements, DocumentIsAtLeastTheView) {
    PageMeasurements m;
    m.view = {600, 800};
    m.scroll = {1000, 100};
    EXPECT_EQ(documentWidth(m), 1000);
    EXPECT_EQ(documentHeight(m), 800);
    EXPECT_EQ(leftOverflow(m), 0);
    m.body.direction = "rtl";
    EXPECT_EQ(leftOverflow(m), 400);
}

TEST(PageMeasurements, AbsurdNumbersAreClamped) {
    const PageMeasurements m = read(R"({"view":{"width":-7,"height":1e9},"scroll":{"width":1e300,"height":-5},
        "root":{"marginLeft":-1e300,"padding":{"top":-1},"zoom":0},"body":{"zoom":1e9},"structureCost":-1})");
    EXPECT_EQ(m.view, (NSSize{16, 20'000}));
    EXPECT_EQ(m.scroll, (NSSize{25'000'000, 0}));
    EXPECT_EQ(m.root.marginLeft, -25'000'000);
    EXPECT_EQ(m.root.padding.top, 0);
    EXPECT_EQ(m.root.zoom, 0.01);
    EXPECT_EQ(m.body.zoom, 100);
    EXPECT_EQ(m.structureCost, 0);
}

TEST(PageMeasurements, TextsThatAreNoPlainValuesAreDropped) {
    for (const std::string& text :
         {std::string("red;}*{display:none"), std::string("url(\"x\")"), std::string("red/*"),
          std::string("\\72 ed"), std::string("rgb(1, 2, 3"), std::string(")("), std::string("re\nd"),
          std::string(), std::string(20'000, 'x')}) {
        const Json canvas = Json::object({{"color", text}, {"repeat", "no-repeat"}});
        const PageMeasurements m = pageMeasurementsFromJson(Json::object({{"canvas", canvas}}));
        EXPECT_EQ(m.canvas.color, "rgba(0, 0, 0, 0)") << text;
        EXPECT_EQ(m.canvas.repeat, "no-repeat");
    }
}

} // namespace
} // namespace qrv::engine
