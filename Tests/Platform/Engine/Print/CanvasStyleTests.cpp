#include "Platform/Engine/Print/CanvasStyle.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// A root of 600 x 400 in a view of 600 x 800, with borders of 1, 2, 3 and 4 px.
PageMeasurements bordered() {
    PageMeasurements m;
    m.view.width = 600;
    m.view.height = 800;
    m.root.border.top = 1;
    m.root.border.right = 2;
    m.root.border.bottom = 3;
    m.root.border.left = 4;
    m.root.borderColor.top = "red";
    m.root.borderColor.right = "blue";
    m.root.borderColor.bottom = "green";
    m.root.borderColor.left = "lime";
    m.root.width = 594;
    m.root.height = 396;
    m.canvas.images = "none";
    m.canvas.positionX = m.canvas.positionY = "0%";
    m.canvas.size = "auto";
    m.canvas.repeat = "repeat";
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
    m.root.border.right = m.root.border.bottom = m.root.border.left = 0;
    EXPECT_EQ(canvas(m, boxAsView(m)).plan.imagesOnTop, "linear-gradient(red,red),");
    m.root.border.top = 0;
    EXPECT_EQ(canvas(m, boxAsView(m)).plan.imagesOnTop, "");
}

TEST(CanvasStyle, BorderStandsBeforeTheImages) {
    PageMeasurements m = bordered();
    m.root.border.right = m.root.border.bottom = m.root.border.left = 0;
    m.canvas.isBody = m.canvas.hasImage = true;
    m.canvas.images = "url,url,url";
    m.canvas.repeat = "repeat-x, repeat-y";
    Canvas drawn = canvas(m, boxAsView(m));
    EXPECT_EQ(drawn.plan.imageSource, "body");
    EXPECT_THAT(drawn.rule, HasSubstr("background-repeat:no-repeat,repeat-x,repeat-y,repeat-x!important"));
    EXPECT_THAT(canvas(m, boxOnScreen(m)).rule, HasSubstr("background-repeat:repeat-x, repeat-y!important"));
}

// The engine places images as if the root stood on the first page, at the left.
TEST(CanvasStyle, ImagesReferToTheRootsPaddingBox) {
    PageMeasurements m = bordered();
    m.canvas.hasImage = true;
    m.canvas.images = "linear-gradient";
    m.root.marginLeft = 30;
    m.root.marginTop = 20;
    Canvas moved = canvas(m, boxOnScreen(m));
    EXPECT_THAT(moved.rule, HasSubstr("background-position-x:calc(0% + 34px)"));
    EXPECT_THAT(moved.rule, HasSubstr("background-position-y:calc(0% + 821px)"));
    EXPECT_THAT(moved.rule, HasSubstr("background-size:594px 396px"));
    EXPECT_EQ(moved.plan.imageSource, "");

    m.canvas.isFixed = true;
    EXPECT_THAT(canvas(m, boxOnScreen(m)).rule, HasSubstr("background-size:600px 800px"));
}

TEST(CanvasStyle, ImagesReferToTheBoxTheirOriginNames) {
    struct {
        const char *origin, *size, *left;
    } cases[] = {{"border-box", "614px 420px", "30px"},
                 {"padding-box", "608px 416px", "34px"},
                 {"content-box", "594px 396px", "41px"}};

    PageMeasurements m = bordered();
    m.canvas.hasImage = true;
    m.canvas.images = "linear-gradient";
    m.root.marginLeft = 30;
    m.root.padding.left = m.root.padding.right = 7;
    m.root.padding.top = m.root.padding.bottom = 10;
    for (const auto& c : cases) {
        m.canvas.origin = c.origin;
        std::string rule = canvas(m, boxAsView(m)).rule;
        EXPECT_THAT(rule, HasSubstr(c.size)) << c.origin;
        EXPECT_THAT(rule, HasSubstr(std::string("calc(0% + ") + c.left + ")")) << c.origin;
    }
}

// It covers the root of the screen, 594 x 396, not the view.
TEST(CanvasStyle, CoveringImageKeepsItsSize) {
    PageMeasurements m = bordered();
    m.canvas.hasImage = true;
    m.canvas.images = "url";
    m.canvas.ratios = "3";
    m.canvas.size = "cover";
    EXPECT_THAT(canvas(m, boxAsView(m)).rule, HasSubstr(",1188px 396px!important"));
}

TEST(CanvasStyle, BodysColourCoversTheCanvas) {
    PageMeasurements m = bordered();
    m.canvas.color = "rgb(1, 2, 3)";
    EXPECT_THAT(canvas(m, boxOnScreen(m)).rule, Not(HasSubstr("background-color")));
    m.canvas.isBody = true;
    EXPECT_EQ(canvas(m, boxOnScreen(m)).rule,
              "html{background-color:rgb(1, 2, 3)!important;background-clip:border-box!important;}");
}

// The head's place is counted from the root's padding box, that of its images from the document's corner.
TEST(CanvasStyle, BoxBehindADocumentWithAnEffect) {
    PageMeasurements m = bordered();
    m.scroll.width = 900;
    m.scroll.height = 2000;
    m.canvas.hasImage = m.canvas.isBody = true;
    m.canvas.images = "url";
    m.canvas.color = "pink";
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
