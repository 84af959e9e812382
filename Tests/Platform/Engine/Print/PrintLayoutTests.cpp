#include "Platform/Engine/Print/PrintLayout.h"

#include "Platform/Engine/DevTools/Json.h"
#include "Tests/Platform/Engine/JsonText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace qrv::engine {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// An ordinary page: no document-wide styles but the engine's own.
PageMeasurements page(double width, double height, double viewWidth = 612, double viewHeight = 792) {
    PageMeasurements m;
    m.view.width = viewWidth;
    m.view.height = viewHeight;
    m.scroll.width = width;
    m.scroll.height = height;
    m.root.isHtml = true;
    m.body.exists = true;
    m.root.width = viewWidth;
    m.root.height = height;
    m.body.marginLeft = 8;
    m.body.width = viewWidth - 16;
    m.body.height = height - 16;
    return m;
}

// The declarations of the rule with this selector, found as whole words in the sheet.
std::string ruleOf(const PrintPlan& plan, const std::string& selector) {
    for (const char* before : {"}", "{"}) {
        auto start = plan.styleSheet.find(before + selector + "{");
        if (start == std::string::npos) continue;
        start += selector.size() + 2;
        auto end = plan.styleSheet.find('}', start);
        return ";" + plan.styleSheet.substr(start, end - start);
    }
    return {};
}

// The value that a rule gives to a property last, without its importance; "" when none.
std::string valueOf(const PrintPlan& plan, const std::string& selector, const std::string& property) {
    std::string rule = ruleOf(plan, selector);
    auto start = rule.rfind(";" + property + ":");
    if (start == std::string::npos) return {};
    start += property.size() + 2;
    return rule.substr(start, rule.find("!important", start) - start);
}

/// Media queries are answered from the paper that the engine is told, less its rounding.
void expectPaperLikeView(const PrintPlan& plan, NSSize view) {
    EXPECT_NEAR(plan.paper.width * 96 / plan.scale, view.width, 1e-9);
    EXPECT_NEAR(plan.paper.height * 96 / plan.scale, view.height - 0.5, 1e-9);
}

TEST(PrintLayout, ScreenViewIsThePaperInPixels) {
    EXPECT_EQ(screenView({612, 792}).width, 612);
    EXPECT_EQ(screenView({612, 792}).height, 792);
    EXPECT_EQ(screenView({595.28, 841.89}).width, 595);
    EXPECT_EQ(screenView({595.28, 841.89}).height, 842);
    EXPECT_EQ(screenView({nan, infinity}).width, 72);
    EXPECT_EQ(screenView({nan, infinity}).height, 14400);
}

TEST(PrintLayout, PaginatedViewIsWhatTheMarginsLeave) {
    struct {
        double width, height, margin, viewWidth, viewHeight;
    } cases[] = {
        {612, 792, 36, 720, 960},   {595, 842, 36, 697, 1026},     {612, 792, 0, 816, 1056},
        {612, 792, -10, 816, 1056}, {612, 792, nan, 816, 1056},    {612, 792, 1e9, 96, 336},
        {612, 792, 300, 96, 336},   {612, 792, infinity, 96, 336}, {10, 10, 36, 96, 96},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << " x " << c.height << " margin " << c.margin);
        NSSize view = paginatedView({c.width, c.height}, c.margin);
        EXPECT_EQ(view.width, c.viewWidth);
        EXPECT_EQ(view.height, c.viewHeight);
    }
}

TEST(PrintLayout, ScreenPageIsTheLargerOfViewAndDocument) {
    struct {
        double width, height, pageWidth, pageHeight;
    } cases[] = {{612, 3000, 612, 3000},
                 {612, 200, 612, 792},
                 {3000, 100, 3000, 792},
                 {0, 0, 612, 792},
                 {900, 50000, 900, 50000}};

    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << " x " << c.height);
        for (const PrintPlan& plan :
             {screenPlan(page(c.width, c.height)), plainScreenPlan(page(c.width, c.height))}) {
            EXPECT_EQ(plan.page.width, c.pageWidth);
            EXPECT_EQ(plan.page.height, c.pageHeight);
            expectPaperLikeView(plan, {612, 792});
        }
    }
}

TEST(PrintLayout, ScreenPlanPrintsThePageBehindTheViewport) {
    PrintPlan plan = screenPlan(page(900, 3000));
    EXPECT_TRUE(plan.usesViewportPage);
    EXPECT_EQ(plan.pageRanges, "2");
    EXPECT_DOUBLE_EQ(plan.scale, 4.0 / 3);
    EXPECT_EQ(plan.shrink, 1);
    EXPECT_EQ(plan.imageSource, "");
    EXPECT_EQ(valueOf(plan, "@page document:first", "size"), "612pt 792pt");
    EXPECT_EQ(valueOf(plan, "@page document", "size"), "900pt 3000pt");
    EXPECT_EQ(valueOf(plan, "html", "page"), "document");
    EXPECT_EQ(valueOf(plan, "html", "contain"), "size layout");
    EXPECT_EQ(valueOf(plan, "html", "width"), "612px");
    EXPECT_EQ(valueOf(plan, "html", "margin"), "0.05px 0px 0px 0px");
}

TEST(PrintLayout, RootsPaddingBoxBecomesTheView) {
    PageMeasurements m = page(612, 3000);
    m.root.padding.top = 10;
    m.root.height = 2990;
    PrintPlan plan = screenPlan(m);
    EXPECT_EQ(valueOf(plan, "html", "padding"), "10px 0px 0px 0px");
    EXPECT_EQ(valueOf(plan, "html", "contain-intrinsic-height"), "782px");
    EXPECT_EQ(valueOf(plan, "html", "height"), "auto");
    EXPECT_EQ(valueOf(plan, "html", "border-width"), "0px 0px 2208px 0px");
    EXPECT_EQ(valueOf(plan, "html", "border-color"), "transparent");
    EXPECT_EQ(valueOf(plan, "body", "min-height"), "");

    m.root.heightIsAuto = false;
    EXPECT_EQ(valueOf(screenPlan(m), "html", "height"), "782px");

    PrintPlan low = screenPlan(page(612, 200));
    EXPECT_EQ(valueOf(low, "html", "padding"), "0px 0px 592px 0px");
    EXPECT_EQ(valueOf(low, "html", "border-width"), "0px 0px 0px 0px");
    EXPECT_EQ(valueOf(low, "html", "border-style"), "");
}

// A root that is wider than the view, or begins to the left of it, gives the body neither width nor place.
TEST(PrintLayout, BodyKeepsItsPlaceAcrossACutRoot) {
    struct {
        const char* name;
        double rootWidth, rootMargin;
        const char *left, *width;
    } cases[] = {
        {"fits", 612, 0, "", ""},
        {"wider than the view", 980, 0, "8px", "596px"},
        {"begins to the left of the view", 612, -20, "-12px", "596px"},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PageMeasurements m = page(980, 3000);
        m.root.width = c.rootWidth;
        m.root.marginLeft = c.rootMargin;
        PrintPlan plan = screenPlan(m);
        EXPECT_EQ(valueOf(plan, "body", "margin-left"), c.left);
        for (const char* property : {"width", "min-width", "max-width"}) {
            EXPECT_EQ(valueOf(plan, "body", property), c.width) << property;
        }
    }

    PageMeasurements zoomed = page(980, 3000);
    zoomed.root.marginLeft = -20;
    zoomed.root.zoom = 2;
    EXPECT_EQ(valueOf(screenPlan(zoomed), "body", "margin-left"), "-2px");
}

TEST(PrintLayout, BodyKeepsItsHeightInACutRootThatGaveIt) {
    struct {
        const char* name;
        bool rootIsAuto, bodyIsAuto;
        const char *display, *minimum, *height;
    } cases[] = {
        {"all from the content", true, true, "block", "", ""},
        {"root of fixed height", false, true, "block", "2984px", ""},
        {"body that is a part of it", false, false, "block", "2984px", "2984px"},
        {"stretched body", true, true, "flex", "2984px", ""},
        {"body that would be a part of it", true, false, "flex", "2984px", ""},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PageMeasurements m = page(612, 3000);
        m.root.heightIsAuto = c.rootIsAuto;
        m.body.heightIsAuto = c.bodyIsAuto;
        m.root.display = c.display;
        EXPECT_EQ(valueOf(screenPlan(m), "body", "min-height"), c.minimum);
        EXPECT_EQ(valueOf(screenPlan(m), "body", "height"), c.height);
    }
}

TEST(PrintLayout, RootThatContainsPositionedBoxesKeepsItsPaddingBox) {
    PageMeasurements m = page(612, 3000);
    m.root.isContainer = true;
    m.root.marginTop = 30;
    PrintPlan plan = screenPlan(m);
    EXPECT_EQ(valueOf(plan, "html", "contain-intrinsic-height"), "3000px");
    EXPECT_EQ(valueOf(plan, "html", "padding"), "0px 0px 0px 0px");
    EXPECT_EQ(valueOf(plan, "html", "top"), "30px");
    EXPECT_EQ(valueOf(plan, "html", "border-style"), "");

    PageMeasurements low = page(612, 200);
    low.root.isContainer = true;
    EXPECT_EQ(valueOf(screenPlan(low), "html", "border-width"), "0px 0px 592px 0px");
}

// Where the root contains absolutely positioned boxes alone, fixed ones have to miss it to find the view.
TEST(PrintLayout, FixedBoxesReferToTheView) {
    struct {
        const char* name;
        bool isContainer, containsFixed;
        double width;
        const char* containment;
    } cases[] = {
        {"no container: made one, as large as the view", false, false, 612, "size layout"},
        {"container of absolutely positioned boxes", true, false, 612, "size"},
        {"container of all", true, true, 612, "size layout"},
        {"the view is not at the left of the page", true, false, 900, "size layout"},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PageMeasurements m = page(c.width, 3000);
        m.body.direction = c.width > m.view.width ? "rtl" : "ltr";
        m.root.isContainer = c.isContainer;
        m.root.containsFixed = c.containsFixed;
        EXPECT_EQ(valueOf(screenPlan(m), "html", "contain"), c.containment);
    }
}

TEST(PrintLayout, RightToLeftPagesReachToTheLeftOfTheView) {
    PageMeasurements m = page(1500, 900);
    m.body.direction = "rtl";
    PrintPlan plan = screenPlan(m);
    EXPECT_EQ(valueOf(plan, "html", "margin"), "0.05px 0px 0px 888px");
    EXPECT_EQ(valueOf(plan, "html", "direction"), "ltr");
    EXPECT_EQ(valueOf(plan, "body", "direction"), "rtl");
    EXPECT_EQ(valueOf(plan, "body", "margin-left"), "8px");
    EXPECT_EQ(valueOf(plan, "body", "width"), "596px");
    EXPECT_EQ(valueOf(screenPlan(page(1500, 900)), "body", "width"), "");

    m.view.width = 720;
    m.view.height = 960;
    EXPECT_EQ(valueOf(paginatedPlan(m, {612, 792}, 36), "html", "margin"), "960px auto 0px 780px");
}

TEST(PrintLayout, BodysBackgroundMovesToTheRoot) {
    PageMeasurements m = page(612, 3000);
    m.canvas.isBody = true;
    m.canvas.color = "rgb(1, 2, 3)";
    PrintPlan plan = screenPlan(m);
    EXPECT_EQ(valueOf(plan, "html", "background-color"), "rgb(1, 2, 3)");
    EXPECT_EQ(valueOf(plan, "html", "background-position-y"), "");
    EXPECT_EQ(valueOf(plan, "body", "background"), "none");
    EXPECT_EQ(plan.imageSource, "");

    m.canvas.hasImage = true;
    m.canvas.images = "url";
    m.canvas.size = "cover";
    m.canvas.repeat = "no-repeat";
    m.canvas.positionX = "50%";
    m.canvas.positionY = "0%";
    plan = screenPlan(m);
    EXPECT_EQ(plan.imageSource, "body");
    EXPECT_EQ(valueOf(plan, "html", "background-size"), "cover");
    EXPECT_EQ(valueOf(plan, "html", "background-repeat"), "no-repeat");
    EXPECT_EQ(valueOf(plan, "html", "background-origin"), "border-box");
    EXPECT_EQ(valueOf(plan, "html", "background-position-x"), "calc(50% + 0px)");
    EXPECT_EQ(valueOf(plan, "html", "background-position-y"), "calc(0% + 792px)");
    EXPECT_EQ(paginatedPlan(m, {612, 792}, 36).imageSource, "body");
}

TEST(PrintLayout, RootsBackgroundStaysWithTheRoot) {
    PageMeasurements m = page(612, 200);
    m.canvas.hasImage = true;
    m.canvas.images = "linear-gradient";
    PrintPlan plan = screenPlan(m);
    EXPECT_EQ(plan.imageSource, "");
    EXPECT_EQ(valueOf(plan, "body", "background"), "");
    EXPECT_EQ(valueOf(plan, "html", "background-color"), "");
    EXPECT_EQ(valueOf(plan, "html", "background-size"),
              "612px 200px"); // repeats below the root, as on the screen

    m.canvas.isFixed = true;
    EXPECT_EQ(valueOf(screenPlan(m), "html", "background-size"), "auto"); // refers to the view
}

TEST(PrintLayout, CanvasIsABoxWhereTheRootHasAnEffect) {
    PageMeasurements m = page(612, 3000);
    m.canvas.color = "rgb(1, 2, 3)";
    EXPECT_EQ(ruleOf(screenPlan(m), "head"), "");
    m.root.hasEffect = true;
    EXPECT_EQ(valueOf(screenPlan(m), "head", "background-color"), "rgb(1, 2, 3)");
    EXPECT_EQ(valueOf(screenPlan(m), "head", "height"), "3000px");
    EXPECT_EQ(valueOf(screenPlan(m), "html", "background"), "none");
}

TEST(PrintLayout, RootsZoomMovesToTheBody) {
    PageMeasurements m = page(612, 3000);
    m.body.zoom = 0.5;
    EXPECT_EQ(valueOf(screenPlan(m), "body", "zoom"), "");
    m.root.zoom = 1.5;
    EXPECT_EQ(valueOf(screenPlan(m), "html", "zoom"), "1");
    EXPECT_EQ(valueOf(screenPlan(m), "body", "zoom"), "0.75");
}

TEST(PrintLayout, SpreadOverflowStaysWithTheViewport) {
    PageMeasurements m = page(612, 3000);
    EXPECT_EQ(valueOf(screenPlan(m), "body", "overflow"), "");
    m.body.overflowSpreads = true;
    EXPECT_EQ(valueOf(screenPlan(m), "body", "overflow"), "visible");
    m.body.exists = false;
    EXPECT_EQ(ruleOf(screenPlan(m), "body"), "");
}

TEST(PrintLayout, WhatCannotBePushedIsPrintedPlainly) {
    PageMeasurements image = page(800, 1200);
    image.root.isHtml = false;
    PageMeasurements vertical = page(800, 1200);
    vertical.body.writingMode = "vertical-rl";
    for (const auto& m : {image, vertical}) {
        PrintPlan plan = screenPlan(m);
        EXPECT_FALSE(plan.usesViewportPage);
        EXPECT_EQ(plan.pageRanges, "1");
        EXPECT_DOUBLE_EQ(plan.scale, 1);
        EXPECT_DOUBLE_EQ(plan.shrink, 0.75);
        EXPECT_EQ(valueOf(plan, "@page ", "size"), "800px 1200px");
        EXPECT_EQ(ruleOf(plan, "html"), "");

        PrintPlan paginated = paginatedPlan(m, {612, 792}, 36);
        EXPECT_FALSE(paginated.usesViewportPage);
        EXPECT_EQ(paginated.pageRanges, "");
        EXPECT_EQ(paginated.styleSheet.find("html{"), std::string::npos);
    }
    // Columns of vertical text go on to the next page instead of being scaled.
    vertical.view.width = 720;
    vertical.view.height = 960;
    vertical.scroll.width = 5000;
    vertical.scroll.height = 960;
    EXPECT_EQ(paginatedPlan(vertical, {612, 792}, 36).scale, 1);
    EXPECT_EQ(paginatedPlan(vertical, {612, 792}, 36).shrink, 1);
    EXPECT_EQ(paginatedPlan(vertical, {612, 792}, 36).documentLength, 5000);
    EXPECT_EQ(screenPlan(vertical).documentLength, 960);
    // Columns that are higher than a page are scaled afterwards only.
    vertical.scroll.height = 1440;
    PrintPlan high = paginatedPlan(vertical, {612, 792}, 36);
    EXPECT_EQ(high.scale, 1);
    EXPECT_EQ(high.shrink, 1.5);
    EXPECT_EQ(valueOf(high, "@page ", "size"), "918pt 1188pt");
    EXPECT_EQ(valueOf(high, "@page ", "margin"), "54pt");
    EXPECT_EQ(high.page.height, 792);
}

TEST(PrintLayout, TablesArePushedAsBlocks) {
    PageMeasurements m = page(612, 3000);
    m.root.display = "inline-table";
    for (const PrintPlan& plan : {screenPlan(m), paginatedPlan(m, {612, 792}, 36)}) {
        EXPECT_TRUE(plan.usesViewportPage);
        EXPECT_EQ(valueOf(plan, "html", "display"), "block");
        EXPECT_EQ(valueOf(plan, "body", "margin-left"), "8px");
        EXPECT_EQ(valueOf(plan, "body", "width"), "596px");
    }
    EXPECT_EQ(valueOf(screenPlan(page(612, 3000)), "html", "display"), "");
}

TEST(PrintLayout, PaginatedPlanFitsTheWidth) {
    struct {
        double width, scale, shrink;
    } cases[] = {{720, 1, 1},    {100, 1, 1},     {1440, 0.5, 1},
                 {7200, 0.1, 1}, {14400, 0.1, 2}, {10000, 0.1, 10000 / 7200.0}};

    for (const auto& c : cases) {
        SCOPED_TRACE(c.width);
        PrintPlan plan = paginatedPlan(page(c.width, 3000, 720, 960), {612, 792}, 36);
        EXPECT_TRUE(plan.usesViewportPage);
        EXPECT_EQ(plan.pageRanges, "2-");
        EXPECT_NEAR(plan.scale, c.scale, 1e-12);
        EXPECT_NEAR(plan.shrink, c.shrink, 1e-12);
        EXPECT_EQ(plan.page.width, 612);
        EXPECT_EQ(plan.page.height, 792);
        expectPaperLikeView(plan, {720, 960});
        // The document is as wide as the space between the margins of the page that is printed.
        double printed = std::max(c.width, 720.0) * plan.scale * 0.75;
        EXPECT_NEAR(printed, 540 * plan.shrink, 1e-9);
    }
}

TEST(PrintLayout, HeadsOfTablesAreRepeatedOnSheets) {
    const PageMeasurements m = page(1440, 3000, 720, 960);
    EXPECT_EQ(valueOf(paginatedPlan(m, {612, 792}, 36), "thead,tfoot", "break-inside"), "avoid");
    EXPECT_EQ(valueOf(plainPaginatedPlan(m, {612, 792}, 36), "thead,tfoot", "break-inside"), "avoid");
    EXPECT_EQ(valueOf(screenPlan(m), "thead,tfoot", "break-inside"), "");
}

TEST(PrintLayout, PaginatedPagesHaveThePapersSizeAndMargins) {
    PrintPlan plan = paginatedPlan(page(1440, 3000, 720, 960), {612, 792}, 36);
    EXPECT_EQ(valueOf(plan, "@page document", "size"), "612pt 792pt");
    EXPECT_EQ(valueOf(plan, "@page document", "margin"), "36pt");
    EXPECT_EQ(valueOf(plan, "@page document:first", "size"), "360px 480px"); // 720 x 960 at scale 0.5
    EXPECT_EQ(valueOf(plan, "@page document:first", "margin"), "0");
    EXPECT_EQ(valueOf(plan, "html", "margin"), "960px auto 0px 0px");

    PrintPlan shrunk = paginatedPlan(page(14400, 3000, 720, 960), {612, 792}, 36);
    EXPECT_EQ(valueOf(shrunk, "@page document", "size"), "1224pt 1584pt");
    EXPECT_EQ(valueOf(shrunk, "@page document", "margin"), "72pt");

    PrintPlan a4 = paginatedPlan(page(697, 3000, 697, 1026), {595, 842}, 36);
    EXPECT_EQ(a4.scale, 1);
    EXPECT_EQ(valueOf(a4, "@page document", "size"), "595pt 842pt");
    EXPECT_EQ(valueOf(a4, "@page document:first", "size"), "697px 1026px");
}

TEST(PrintLayout, PlansSayWhereTheDocumentIsOnThePages) {
    PrintPlan screen = screenPlan(page(900, 3000));
    EXPECT_EQ(screen.viewportPageLength, 792);
    EXPECT_EQ(screen.pageLength, 3000);
    EXPECT_EQ(screen.pageMargin, 0);
    PrintPlan halved = paginatedPlan(page(1440, 3000, 720, 960), {612, 792}, 36);
    EXPECT_EQ(halved.viewportPageLength, 960);
    EXPECT_DOUBLE_EQ(halved.pageLength, 1920);
    EXPECT_EQ(halved.pageMargin, 36);
    PrintPlan shrunk = paginatedPlan(page(14400, 3000, 720, 960), {612, 792}, 36);
    EXPECT_DOUBLE_EQ(shrunk.pageLength, 19200);
    EXPECT_EQ(shrunk.pageMargin, 72);
    PageMeasurements m = page(720, 3000, 720, 960);
    EXPECT_EQ(plainPaginatedPlan(m, {612, 792}, 36).viewportPageLength, 0);
    EXPECT_DOUBLE_EQ(plainPaginatedPlan(m, {612, 792}, 36).pageLength, 960);
    m.body.writingMode = "vertical-rl";
    EXPECT_EQ(plainPaginatedPlan(m, {612, 792}, 36).pageLength, 0);
}

TEST(PrintLayout, MarginsLeaveRoomForContent) {
    struct {
        double margin;
        const char* used;
    } cases[] = {{0, "0pt"},     {-72, "0pt"},   {nan, "0pt"},       {20.5, "20.5pt"},
                 {270, "270pt"}, {271, "270pt"}, {infinity, "270pt"}};

    for (const auto& c : cases) {
        PrintPlan plan = paginatedPlan(page(96, 96, 96, 96), {612, 792}, c.margin);
        EXPECT_EQ(valueOf(plan, "@page document", "margin"), c.used) << c.margin;
    }
}

TEST(PrintLayout, FixedBoxesOfPaginatedPagesReferToTheView) {
    PageMeasurements m = page(720, 3000, 720, 960);
    m.root.border.top = 5;
    m.root.padding.top = 10;
    m.root.marginTop = 20;
    PrintPlan plan = paginatedPlan(m, {612, 792}, 36);
    EXPECT_EQ(valueOf(plan, "html", "contain"), "layout");
    EXPECT_EQ(valueOf(plan, "html", "min-height"), "925px");
    EXPECT_EQ(valueOf(plan, "html", "max-height"), "925px");
}

TEST(PrintLayout, FixedBoxesReferToTheDocumentWhereTheRootsHeightMatters) {
    PageMeasurements container = page(720, 3000, 720, 960);
    container.root.isContainer = true;
    PageMeasurements high = page(720, 3000, 720, 960);
    high.root.heightIsAuto = false;
    for (const PageMeasurements& m : {container, high}) {
        PrintPlan plan = paginatedPlan(m, {612, 792}, 36);
        EXPECT_EQ(valueOf(plan, "html", "contain"), "layout");
        EXPECT_EQ(valueOf(plan, "html", "max-height"), "");
    }
}

// There the root's height is its page's less its margins: 960 px again when printed on pages of 960 px and on
// such of 1920, and 792 px on one of 3000, where its border takes the rest, or of 1500, where a margin does.
TEST(PrintLayout, RootsOfQuirkyPagesFillTheViewStill) {
    PageMeasurements m = page(720, 3000, 720, 960);
    m.root.marginBottom = 20;
    EXPECT_EQ(valueOf(paginatedPlan(m, {612, 792}, 36), "html", "margin"), "960px auto 0px 0px");
    m.isQuirky = true;
    EXPECT_EQ(valueOf(paginatedPlan(m, {612, 792}, 36), "html", "margin"), "960px auto -940px 0px");
    m.scroll.width = 1440;
    EXPECT_EQ(valueOf(paginatedPlan(m, {612, 792}, 36), "html", "margin"), "960px auto 20px 0px");

    PageMeasurements high = page(612, 3000);
    high.isQuirky = true;
    EXPECT_EQ(valueOf(screenPlan(high), "html", "margin"), "0.05px 0px 0px 0px");
    PageMeasurements overflowing = page(612, 1500);
    overflowing.root.height = 792;
    EXPECT_EQ(valueOf(screenPlan(overflowing), "html", "margin"), "0.05px 0px 0px 0px");
    overflowing.isQuirky = true;
    EXPECT_EQ(valueOf(screenPlan(overflowing), "html", "margin"), "0.05px 0px 708px 0px");
}

TEST(PrintLayout, HostileMeasurementsStillMakeAPlan) {
    const auto answer =
        parseJson(R"json({"view":{"width":-1,"height":1e300},"scroll":{"width":1e300,"height":-5},
        "root":{"isHtml":true,"width":1e300,"height":-1,"marginLeft":"left"},"body":{"exists":true},
        "canvas":{"hasImage":true,"isBody":true,"positionX":"0}*{","size":"';alert(1)"}})json");
    const PageMeasurements m = pageMeasurementsFromJson(answer);
    for (const PrintPlan& plan :
         {screenPlan(m), plainScreenPlan(m), paginatedPlan(m, {nan, infinity}, -infinity),
          plainPaginatedPlan(m, {612, 792}, 36)}) {
        EXPECT_GE(plan.scale, 0.1);
        EXPECT_LE(plan.scale, 2);
        EXPECT_GE(plan.page.width, 16);
        EXPECT_LE(plan.page.height, 25'000'000);
        EXPECT_EQ(plan.styleSheet.find("nan"), std::string::npos);
        EXPECT_EQ(plan.styleSheet.find("inf"), std::string::npos);
        EXPECT_EQ(plan.styleSheet.find("alert"), std::string::npos);
        EXPECT_EQ(plan.styleSheet.find("0}*{"), std::string::npos);
    }
}

TEST(PrintLayout, StructureIsLeftOutWhereItWouldTakeTooLong) {
    PageMeasurements m = page(612, 3000);
    for (double cost : {0.0, 1e7, 1.01e7, infinity}) {
        m.structureCost = cost;
        for (const PrintPlan& plan : {screenPlan(m), plainScreenPlan(m), paginatedPlan(m, {612, 792}, 36),
                                      plainPaginatedPlan(m, {612, 792}, 36)}) {
            EXPECT_EQ(plan.isStructured, cost <= 1e7) << cost;
        }
    }
}

TEST(PrintLayout, AContainedRootHasNoOtherHeightThanItsContents) {
    PrintPlan plan = screenPlan(page(612, 3000));
    EXPECT_EQ(valueOf(plan, "html", "min-height"), "0");
    EXPECT_EQ(valueOf(plan, "html", "max-height"), "none");
    EXPECT_EQ(valueOf(plan, "html", "height"), "auto");
    EXPECT_EQ(valueOf(plan, "html", "contain-intrinsic-height"), "792px");
}

TEST(PrintLayout, OnlySheetsReleaseStickyBoxes) {
    PageMeasurements m = page(612, 3000);
    EXPECT_FALSE(screenPlan(m).isOnSheets);
    EXPECT_FALSE(plainScreenPlan(m).isOnSheets);
    EXPECT_TRUE(paginatedPlan(m, {612, 792}, 36).isOnSheets);
    EXPECT_TRUE(plainPaginatedPlan(m, {612, 792}, 36).isOnSheets);
}

TEST(PrintLayout, WhatIsAsLongAsTheDocumentKeepsItWhole) {
    const PageMeasurements m = page(720, 5000, 720, 960);
    EXPECT_TRUE(paginatedPlan(m, {612, 792}, 36).isDivisible);
    EXPECT_TRUE(plainPaginatedPlan(m, {612, 792}, 36).isDivisible);
    EXPECT_FALSE(screenPlan(m).isDivisible);
    PageMeasurements picture = m;
    picture.canvas.hasImage = true;
    EXPECT_FALSE(paginatedPlan(picture, {612, 792}, 36).isDivisible);
    EXPECT_FALSE(plainPaginatedPlan(picture, {612, 792}, 36).isDivisible);
    PageMeasurements effect = m;
    effect.root.hasEffect = true;
    EXPECT_FALSE(paginatedPlan(effect, {612, 792}, 36).isDivisible);
    PageMeasurements stretched = m;
    stretched.root.heightIsAuto = false;
    EXPECT_FALSE(paginatedPlan(stretched, {612, 792}, 36).isDivisible);
}

TEST(PrintLayout, EffectsOfTheRootWorkOnTheCanvasToTheEndOfTheLastSheet) {
    PageMeasurements m = page(720, 1000, 720, 960);
    m.root.hasEffect = true;
    m.canvas.color = "rgb(1, 2, 3)";
    PrintPlan plan = paginatedPlan(m, {612, 792}, 36);
    EXPECT_EQ(valueOf(plan, "html", "background"), "none");
    EXPECT_EQ(valueOf(plan, "head", "background-color"), "rgb(1, 2, 3)");
    EXPECT_EQ(valueOf(plan, "head", "height"), "1919px");
    EXPECT_EQ(valueOf(screenPlan(m), "head", "height"), "1000px");
}

} // namespace
} // namespace qrv::engine
