#include "Platform/Engine/Print/PageMeasurements.h"

#include "Platform/Engine/DevTools/Json.h"

#include <gtest/gtest.h>
#include <limits>

namespace qrv::engine {
namespace {

TEST(PageMeasurements, AreReadFromTheAnswer) {
    auto answer =
        Json::parse(R"json({"viewWidth":612,"viewHeight":792,"scrollWidth":900,"scrollHeight":3000.5,
        "structureCost":5000,"isQuirky":true,"rootIsHtml":true,"hasBody":true,"rootDisplay":"flex","bodyWritingMode":"vertical-rl",
        "bodyDirection":"rtl","rootZoom":1.5,"bodyZoom":0.5,"rootMarginTop":1,"rootMarginBottom":2,"rootMarginLeft":-3,"rootBorderTop":4,
        "rootBorderRight":5,"rootBorderBottom":6,"rootBorderLeft":7,"rootPaddingTop":8,"rootPaddingRight":9,
        "rootPaddingBottom":10,"rootPaddingLeft":11,"rootWidth":12,"rootHeight":13,"rootHeightIsAuto":false,
        "rootIsContainer":true,"rootContainsFixed":true,"rootHasEffect":true,"bodyMarginLeft":-14,"bodyWidth":15,"bodyHeight":16,"bodyHeightIsAuto":false,"rootBorderTopColor":"red","rootBorderRightColor":"blue",
        "rootBorderBottomColor":"green","rootBorderLeftColor":"lime","bodyOverflowSpreads":true,
        "canvasFromBody":true,"canvasHasImage":true,"canvasImages":"url,linear-gradient","canvasIsFixed":true,
        "canvasColor":"color(srgb 1 0 0 / 0.5)","canvasPositionX":"calc(100% - 3px)","canvasPositionY":"2px, 3px",
        "canvasSize":"cover","canvasRatios":"1.5,0","canvasOrigin":"content-box","canvasRepeat":"no-repeat"})json");
    ASSERT_TRUE(answer);
    PageMeasurements m = pageMeasurementsFromJson(*answer);
    EXPECT_EQ(m.viewWidth, 612);
    EXPECT_EQ(m.viewHeight, 792);
    EXPECT_EQ(m.scrollWidth, 900);
    EXPECT_EQ(m.scrollHeight, 3000.5);
    EXPECT_EQ(m.structureCost, 5000);
    EXPECT_TRUE(m.isQuirky);
    EXPECT_TRUE(m.rootIsHtml);
    EXPECT_TRUE(m.hasBody);
    EXPECT_EQ(m.rootDisplay, "flex");
    EXPECT_EQ(m.bodyWritingMode, "vertical-rl");
    EXPECT_EQ(m.bodyDirection, "rtl");
    EXPECT_EQ(m.rootZoom, 1.5);
    EXPECT_EQ(m.bodyZoom, 0.5);
    EXPECT_EQ(m.rootMarginTop, 1);
    EXPECT_EQ(m.rootMarginBottom, 2);
    EXPECT_EQ(m.rootMarginLeft, -3);
    EXPECT_EQ(m.rootBorderTop, 4);
    EXPECT_EQ(m.rootBorderRight, 5);
    EXPECT_EQ(m.rootBorderBottom, 6);
    EXPECT_EQ(m.rootBorderLeft, 7);
    EXPECT_EQ(m.rootPaddingTop, 8);
    EXPECT_EQ(m.rootPaddingRight, 9);
    EXPECT_EQ(m.rootPaddingBottom, 10);
    EXPECT_EQ(m.rootPaddingLeft, 11);
    EXPECT_EQ(m.rootWidth, 12);
    EXPECT_EQ(m.rootHeight, 13);
    EXPECT_FALSE(m.rootHeightIsAuto);
    EXPECT_TRUE(m.rootIsContainer);
    EXPECT_TRUE(m.rootContainsFixed);
    EXPECT_TRUE(m.rootHasEffect);
    EXPECT_EQ(m.bodyMarginLeft, -14);
    EXPECT_EQ(m.bodyWidth, 15);
    EXPECT_EQ(m.bodyHeight, 16);
    EXPECT_FALSE(m.bodyHeightIsAuto);
    EXPECT_EQ(m.rootBorderTopColor, "red");
    EXPECT_EQ(m.rootBorderRightColor, "blue");
    EXPECT_EQ(m.rootBorderBottomColor, "green");
    EXPECT_EQ(m.rootBorderLeftColor, "lime");
    EXPECT_TRUE(m.bodyOverflowSpreads);
    EXPECT_TRUE(m.canvasFromBody);
    EXPECT_TRUE(m.canvasHasImage);
    EXPECT_EQ(m.canvasImages, "url,linear-gradient");
    EXPECT_TRUE(m.canvasIsFixed);
    EXPECT_EQ(m.canvasColor, "color(srgb 1 0 0 / 0.5)");
    EXPECT_EQ(m.canvasPositionX, "calc(100% - 3px)");
    EXPECT_EQ(m.canvasPositionY, "2px, 3px");
    EXPECT_EQ(m.canvasSize, "cover");
    EXPECT_EQ(m.canvasRepeat, "no-repeat");
    EXPECT_EQ(m.canvasRatios, "1.5,0");
    EXPECT_EQ(m.canvasOrigin, "content-box");
}

TEST(PageMeasurements, OfNothingAreInitialValues) {
    for (const Json& answer : {Json(), Json::object({{"viewWidth", "wide"},
                                                     {"scrollWidth", Json::array({1})},
                                                     {"hasBody", 1},
                                                     {"canvasColor", 7}})}) {
        PageMeasurements m = pageMeasurementsFromJson(answer);
        EXPECT_EQ(m.viewWidth, 16);
        EXPECT_EQ(m.scrollWidth, 0);
        EXPECT_FALSE(m.rootIsHtml);
        EXPECT_FALSE(m.hasBody);
        EXPECT_TRUE(m.rootHeightIsAuto);
        EXPECT_EQ(m.rootZoom, 1);
        EXPECT_EQ(m.bodyWritingMode, "horizontal-tb");
        EXPECT_EQ(m.bodyDirection, "ltr");
        EXPECT_EQ(m.canvasColor, "rgba(0, 0, 0, 0)");
        EXPECT_EQ(m.canvasSize, "auto");
        EXPECT_EQ(m.canvasRatios, "0");
        EXPECT_EQ(m.canvasOrigin, "padding-box");
    }
}

TEST(PageMeasurements, DocumentIsAtLeastTheView) {
    PageMeasurements m;
    m.viewWidth = 600;
    m.viewHeight = 800;
    m.scrollWidth = 1000;
    m.scrollHeight = 100;
    EXPECT_EQ(documentWidth(m), 1000);
    EXPECT_EQ(documentHeight(m), 800);
    EXPECT_EQ(leftOverflow(m), 0);
    m.bodyDirection = "rtl";
    EXPECT_EQ(leftOverflow(m), 400);
}

TEST(PageMeasurements, AbsurdNumbersAreClamped) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    PageMeasurements m;
    m.viewWidth = nan;
    m.viewHeight = 1e9;
    m.scrollWidth = infinity;
    m.scrollHeight = -5;
    m.rootMarginLeft = -infinity;
    m.bodyMarginLeft = nan;
    m.rootPaddingTop = -1;
    m = sanitized(m);
    EXPECT_EQ(m.viewWidth, 16);
    EXPECT_EQ(m.viewHeight, 20'000);
    EXPECT_EQ(m.scrollWidth, 25'000'000);
    EXPECT_EQ(m.scrollHeight, 0);
    EXPECT_EQ(m.rootMarginLeft, -25'000'000);
    EXPECT_EQ(m.bodyMarginLeft, 0);
    EXPECT_EQ(m.rootPaddingTop, 0);
}

TEST(PageMeasurements, TextsThatAreNoPlainValuesAreDropped) {
    for (const char* text :
         {"red;}*{display:none", "url(\"x\")", "red/*", "\\72 ed", "rgb(1, 2, 3", ")(", "re\nd", ""}) {
        PageMeasurements m;
        m.canvasColor = text;
        EXPECT_EQ(sanitized(m).canvasColor, "rgba(0, 0, 0, 0)") << text;
    }
    PageMeasurements m;
    m.canvasRepeat = std::string(20'000, 'x');
    EXPECT_EQ(sanitized(m).canvasRepeat, "repeat");
}

} // namespace
} // namespace qrv::engine
