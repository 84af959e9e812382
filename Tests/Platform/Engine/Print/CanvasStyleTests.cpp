#include "Platform/Engine/Print/CanvasStyle.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// A root of 600 x 400 in a view of 600 x 800, with borders of 1, 2, 3 and 4 px.
PageMeasurements bordered() {
    PageMeasurements m;
    m.viewWidth = 600;
    m.viewHeight = 800;
    m.rootBorderTop = 1;
    m.rootBorderRight = 2;
    m.rootBorderBottom = 3;
    m.rootBorderLeft = 4;
    m.rootBorderTopColor = "red";
    m.rootBorderRightColor = "blue";
    m.rootBorderBottomColor = "green";
    m.rootBorderLeftColor = "lime";
    m.rootWidth = 594;
    m.rootHeight = 396;
    m.canvasImages = "none";
    m.canvasPositionX = m.canvasPositionY = "0%";
    m.canvasSize = "auto";
    m.canvasRepeat = "repeat";
    return m;
}

struct Canvas {
    PrintPlan plan;
    std::string rule;
};

Canvas canvas(const PageMeasurements& m, const RootBox& box) {
    Canvas canvas;
    StyleRule rule("html");
    addCanvas(canvas.plan, rule, m, box);
    canvas.rule = rule.text();
    return canvas;
}

TEST(CanvasStyle, RootWithItsOwnBorderNeedsNothing) {
    PageMeasurements m = bordered();
    Canvas same = canvas(m, boxOnScreen(m));
    EXPECT_EQ(same.rule, "html{}");
    EXPECT_EQ(same.plan.imageSource, "");
    EXPECT_EQ(same.plan.imagesOnTop, "");
}

TEST(CanvasStyle, DrawsTheBorderThatTheRootHasLost) {
    PageMeasurements m = bordered();
    Canvas drawn = canvas(m, boxAsView(m));
    EXPECT_EQ(drawn.plan.imageSource, "root");
    EXPECT_EQ(drawn.plan.imagesOnTop, "linear-gradient(red,red),linear-gradient(green,green),"
                                      "linear-gradient(lime,lime),linear-gradient(blue,blue),");
    EXPECT_THAT(drawn.rule, HasSubstr("background-position-x:0px,0px,0px,598px,calc("));
    EXPECT_THAT(drawn.rule, HasSubstr("background-position-y:800px,1197px,801px,801px,calc("));
    EXPECT_THAT(drawn.rule, HasSubstr("background-size:600px 1px,600px 3px,4px 396px,2px 396px,"));
    EXPECT_THAT(drawn.rule,
                HasSubstr("background-repeat:no-repeat,no-repeat,no-repeat,no-repeat,repeat!important"));
}

TEST(CanvasStyle, DrawsTheSidesThereAre) {
    PageMeasurements m = bordered();
    m.rootBorderRight = m.rootBorderBottom = m.rootBorderLeft = 0;
    EXPECT_EQ(canvas(m, boxAsView(m)).plan.imagesOnTop, "linear-gradient(red,red),");
    m.rootBorderTop = 0;
    EXPECT_EQ(canvas(m, boxAsView(m)).plan.imagesOnTop, "");
}

TEST(CanvasStyle, BorderStandsBeforeTheImages) {
    PageMeasurements m = bordered();
    m.rootBorderRight = m.rootBorderBottom = m.rootBorderLeft = 0;
    m.canvasFromBody = m.canvasHasImage = true;
    m.canvasImages = "url,url,url";
    m.canvasRepeat = "repeat-x, repeat-y";
    Canvas drawn = canvas(m, boxAsView(m));
    EXPECT_EQ(drawn.plan.imageSource, "body");
    EXPECT_THAT(drawn.rule, HasSubstr("background-repeat:no-repeat,repeat-x,repeat-y,repeat-x!important"));
    EXPECT_THAT(canvas(m, boxOnScreen(m)).rule, HasSubstr("background-repeat:repeat-x, repeat-y!important"));
}

// The engine places images as if the root stood on the first page, at the left.
TEST(CanvasStyle, ImagesReferToTheRootsPaddingBox) {
    PageMeasurements m = bordered();
    m.canvasHasImage = true;
    m.canvasImages = "linear-gradient";
    m.rootMarginLeft = 30;
    m.rootMarginTop = 20;
    Canvas moved = canvas(m, boxOnScreen(m));
    EXPECT_THAT(moved.rule, HasSubstr("background-position-x:calc(0% + 34px)"));
    EXPECT_THAT(moved.rule, HasSubstr("background-position-y:calc(0% + 821px)"));
    EXPECT_THAT(moved.rule, HasSubstr("background-size:594px 396px"));
    EXPECT_EQ(moved.plan.imageSource, "");

    m.canvasIsFixed = true;
    EXPECT_THAT(canvas(m, boxOnScreen(m)).rule, HasSubstr("background-size:600px 800px"));
}

TEST(CanvasStyle, ImagesReferToTheBoxTheirOriginNames) {
    struct {
        const char *origin, *size, *left;
    } cases[] = {{"border-box", "614px 420px", "30px"},
                 {"padding-box", "608px 416px", "34px"},
                 {"content-box", "594px 396px", "41px"}};

    PageMeasurements m = bordered();
    m.canvasHasImage = true;
    m.canvasImages = "linear-gradient";
    m.rootMarginLeft = 30;
    m.rootPaddingLeft = m.rootPaddingRight = 7;
    m.rootPaddingTop = m.rootPaddingBottom = 10;
    for (const auto& c : cases) {
        m.canvasOrigin = c.origin;
        std::string rule = canvas(m, boxAsView(m)).rule;
        EXPECT_THAT(rule, HasSubstr(c.size)) << c.origin;
        EXPECT_THAT(rule, HasSubstr(std::string("calc(0% + ") + c.left + ")")) << c.origin;
    }
}

// It covers the root of the screen, 594 x 396, not the view.
TEST(CanvasStyle, CoveringImageKeepsItsSize) {
    PageMeasurements m = bordered();
    m.canvasHasImage = true;
    m.canvasImages = "url";
    m.canvasRatios = "3";
    m.canvasSize = "cover";
    EXPECT_THAT(canvas(m, boxAsView(m)).rule, HasSubstr(",1188px 396px!important"));
}

TEST(CanvasStyle, BodysColourCoversTheCanvas) {
    PageMeasurements m = bordered();
    m.canvasColor = "rgb(1, 2, 3)";
    EXPECT_THAT(canvas(m, boxOnScreen(m)).rule, Not(HasSubstr("background-color")));
    m.canvasFromBody = true;
    EXPECT_EQ(canvas(m, boxOnScreen(m)).rule,
              "html{background-color:rgb(1, 2, 3)!important;background-clip:border-box!important;}");
}

// The head's place is counted from the root's padding box, that of its images from the document's corner.
TEST(CanvasStyle, BoxBehindADocumentWithAnEffect) {
    PageMeasurements m = bordered();
    m.scrollWidth = 900;
    m.scrollHeight = 2000;
    m.canvasHasImage = m.canvasFromBody = true;
    m.canvasImages = "url";
    m.canvasColor = "pink";
    RootBox box = boxAsView(m);
    box.marginLeft = 300;
    box.top = -5;
    PrintPlan plan;
    StyleSheet sheet;
    StyleRule root("html");
    addCanvasBox(plan, sheet, root, m, box, documentHeight(m));
    EXPECT_EQ(root.text(), "html{background:none!important;}");
    EXPECT_EQ(plan.imageTarget, "head");
    EXPECT_EQ(plan.imageSource, "body");
    EXPECT_THAT(plan.imagesOnTop, HasSubstr("linear-gradient(red,red),"));
    std::string text = sheet.text();
    EXPECT_THAT(text, HasSubstr("head *{display:none!important;}"));
    EXPECT_THAT(text, HasSubstr("left:-300px!important;top:5px!important;width:900px!important;"
                                "height:2000px!important;"));
    EXPECT_THAT(text, HasSubstr("background-color:pink!important;"));
    EXPECT_THAT(text, HasSubstr("background-position-y:0px,397px,1px,1px,calc(0% + 1px)!important;"));
}

} // namespace
} // namespace qrv::engine
