#include "Platform/WebKit/Engine/PrintLayout.h"

#include "Platform/WebKit/Engine/CanvasBackground.h"
#include "Platform/WebKit/Engine/RootBox.h"
#include "Platform/WebKit/Engine/StyleText.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace qrv::engine {
namespace {

constexpr double pointsPerInch = 72;
constexpr double pixelsPerPoint = 96.0 / 72;
constexpr double smallestScale = 0.1; // the engine takes no smaller one
constexpr double smallestContent = 72;
constexpr double smallestPaper = 72;
constexpr double largestPaper = 14400;
// Just enough for a root as high as the view to miss the end of the first page.
constexpr double pushMargin = 0.05;

struct Paper {
    double width;
    double height;
    double margin;

    double printableWidth() const { return width - 2 * margin; }

    double printableHeight() const { return height - 2 * margin; }
};

double saneLength(double value, double low, double high) {
    return std::isnan(value) ? low : std::clamp(value, low, high);
}

Paper sanePaper(double width, double height, double margin) {
    Paper paper{saneLength(width, smallestPaper, largestPaper),
                saneLength(height, smallestPaper, largestPaper), 0};
    double room = (std::min(paper.width, paper.height) - smallestContent) / 2;
    paper.margin = saneLength(margin, 0, room);
    return paper;
}

// The body's writing mode is the document's; the viewport takes it from there.
bool isVertical(const PageMeasurements& m) {
    return m.bodyWritingMode != "horizontal-tb";
}

// Tables do not take size containment, so they cannot be pushed in one piece; and pages of vertical text
// follow each other from side to side.
bool canBePushed(const PageMeasurements& m) {
    return m.rootIsHtml && !isVertical(m) && m.rootDisplay.find("table") == std::string::npos;
}

double documentWidth(const PageMeasurements& m) {
    return std::max(m.viewWidth, m.scrollWidth);
}

double documentHeight(const PageMeasurements& m) {
    return std::max(m.viewHeight, m.scrollHeight);
}

// The body's direction is the document's, too.
bool runsRightToLeft(const PageMeasurements& m) {
    return m.bodyDirection == "rtl";
}

// How far the document reaches to the left of the view.
double leftOverflow(const PageMeasurements& m) {
    return runsRightToLeft(m) ? documentWidth(m) - m.viewWidth : 0;
}

// What both modes ask of the root: stand in normal flow on pages of our name, with the width it has on the
// screen, nothing cut off, and overflow to the right only.
void addRootInPlace(StyleRule& root, const PageMeasurements& m) {
    root.add("page", "document");
    root.add("position", "relative");
    root.add("inset", "auto");
    root.add("float", "none");
    root.add("overflow", "visible");
    root.add("transition", "none");
    root.add("zoom", "1"); // the engine drops it, hence the body's
    root.add("direction", "ltr");
    root.add("writing-mode", "horizontal-tb");
    root.add("box-sizing", "content-box");
    root.add("width", pixels(m.rootWidth));
    root.add("min-width", "0");
    root.add("max-width", "none");
}

void addBody(StyleSheet& sheet, const PageMeasurements& m, bool keepsHeight) {
    if (!m.hasBody) return;
    StyleRule body("body");
    body.add("transition", "none");
    if (m.rootZoom != 1) body.add("zoom", number(m.rootZoom * m.bodyZoom));
    body.add("direction", m.bodyDirection);
    body.add("writing-mode", m.bodyWritingMode);
    if (m.bodyOverflowSpreads) body.add("overflow", "visible");
    if (m.canvasFromBody) body.add("background", "none");
    if (runsRightToLeft(m) || keepsHeight) {
        body.add("box-sizing", "content-box");
        body.add("margin-left", pixels(m.bodyMarginLeft));
        body.add("width", pixels(m.bodyWidth));
        body.add("min-width", "0");
        body.add("max-width", "none");
    }
    if (keepsHeight) body.add("height", pixels(m.bodyHeight));
    sheet.add(body);
}

// Size containment is enough to print the root in one piece. Fixed boxes then refer to the first page, which
// is the view; but their place is the left of the page even where the document reaches to the left of the
// view.
bool containsFixedBoxes(const PageMeasurements& m) {
    return !m.rootIsContainer || m.rootContainsFixed || leftOverflow(m) > 0;
}

void addContainedBox(StyleRule& root, const PageMeasurements& m, const RootBox& box) {
    root.add("contain", containsFixedBoxes(m) ? "size layout" : "size");
    root.add("top", pixels(box.top));
    root.add("margin", pixels(pushMargin) + " 0 0 " + pixels(box.marginLeft));
    if (box.border.bottom > m.rootBorderBottom) {
        root.add("border-bottom", pixels(box.border.bottom) + " solid transparent");
    }
    root.add("padding", lengths(box.padding));
    root.add("height", m.rootHeightIsAuto ? "auto" : pixels(box.contentHeight));
    root.add("contain-intrinsic-height", pixels(box.contentHeight));
    root.add("min-height", "0");
    root.add("max-height", "none");
}

struct Area {
    double left;
    double top;
    double width;
    double height;
};

// What the canvas's images refer to: the root's padding box, or all that is seen where they do not scroll.
Area imageArea(const PageMeasurements& m) {
    if (m.canvasIsFixed) return {0, 0, documentWidth(m), documentHeight(m)};
    RootBox root = boxOnScreen(m);
    return {m.rootMarginLeft + leftOverflow(m) + root.border.left, m.rootMarginTop + root.border.top,
            root.width(m.rootWidth) - root.border.left - root.border.right,
            root.height() - root.border.top - root.border.bottom};
}

// The root's background box when it is printed is its border box. The engine places the canvas's images as if
// the root stood at the start of the first page, hence the shift.
void addCanvas(StyleRule& root, const PageMeasurements& m, const RootBox& box, double down) {
    if (m.canvasFromBody) {
        root.add("background-color", m.canvasColor);
        root.add("background-repeat", m.canvasRepeat);
        root.add("background-clip", "border-box");
    }
    if (!m.canvasHasImage) return;
    Area from = imageArea(m);
    double newWidth = box.width(m.rootWidth);
    bool isSameSize = from.width == newWidth && from.height == box.height();
    root.add("background-origin", "border-box");
    root.add("background-attachment", "scroll");
    root.add("background-size",
             isSameSize ? m.canvasSize : fixedSizes(m.canvasSize, m.canvasImages, from.width, from.height));
    root.add("background-position-x", movedPositions(m.canvasPositionX, {from.left, from.width},
                                                     {box.marginLeft, newWidth}, box.marginLeft));
    root.add("background-position-y",
             movedPositions(m.canvasPositionY, {from.top, from.height}, {0, box.height()}, down));
}

double inches(double points) {
    return points / pointsPerInch;
}

// One page for the whole document, printed larger by `shrink` than wanted.
PrintPlan wholeDocumentPlan(const PageMeasurements& m, double shrink) {
    PrintPlan plan;
    plan.shrink = shrink;
    plan.scale = shrink * pixelsPerPoint;
    plan.pageWidth = documentWidth(m);
    plan.pageHeight = documentHeight(m);
    plan.paperWidth = inches(plan.pageWidth * shrink);
    plan.paperHeight = inches(plan.pageHeight * shrink);
    return plan;
}

// How far the document has to be scaled down to fit the paper's width. The engine goes down to a tenth only:
// what is wider is printed on larger pages, which are shrunk afterwards.
void fitWidth(PrintPlan& plan, const Paper& paper, double width) {
    double available = paper.printableWidth() * pixelsPerPoint;
    plan.shrink = std::max(1.0, width * smallestScale / available);
    plan.scale = std::clamp(plan.shrink * available / width, smallestScale, 1.0);
    plan.pageWidth = paper.width;
    plan.pageHeight = paper.height;
    plan.paperWidth = inches(paper.width * plan.shrink);
    plan.paperHeight = inches(paper.height * plan.shrink);
}

StyleRule paperRule(std::string_view selector, const Paper& paper, double shrink) {
    return pageRule(selector, points(paper.width * shrink), points(paper.height * shrink),
                    points(paper.margin * shrink));
}

} // namespace

LayoutSize screenView(double paperWidth, double paperHeight) {
    Paper paper = sanePaper(paperWidth, paperHeight, 0);
    return {std::round(paper.width), std::round(paper.height)};
}

LayoutSize paginatedView(double paperWidth, double paperHeight, double margin) {
    Paper paper = sanePaper(paperWidth, paperHeight, margin);
    return {std::floor(paper.printableWidth() * pixelsPerPoint),
            std::floor(paper.printableHeight() * pixelsPerPoint)};
}

PrintPlan screenPlan(const PageMeasurements& measured) {
    PageMeasurements m = sanitized(measured);
    if (!canBePushed(m)) return plainScreenPlan(m);
    PrintPlan plan = wholeDocumentPlan(m, 1);
    plan.usesViewportPage = true;
    plan.pageRanges = "2";
    plan.copiesBodyImage = m.canvasFromBody && m.canvasHasImage;

    StyleSheet sheet;
    sheet.add(pageRule("document", points(plan.pageWidth), points(plan.pageHeight), "0"));
    sheet.add(pageRule("document:first", points(m.viewWidth), points(m.viewHeight), "0"));
    StyleRule root("html");
    addRootInPlace(root, m);
    RootBox box = m.rootIsContainer ? boxAsContainer(m) : boxAsView(m);
    box.marginLeft += leftOverflow(m);
    addContainedBox(root, m, box);
    addCanvas(root, m, box, m.viewHeight);
    sheet.add(root);
    addBody(sheet, m, false);
    plan.styleSheet = sheet.text();
    return plan;
}

PrintPlan plainScreenPlan(const PageMeasurements& measured) {
    PageMeasurements m = sanitized(measured);
    // At any scale but 1 the engine misplaces documents whose text runs in columns from the right.
    PrintPlan plan = wholeDocumentPlan(m, 1 / pixelsPerPoint);
    plan.pageRanges = "1";
    StyleSheet sheet;
    sheet.add(pageRule("", pixels(plan.pageWidth), pixels(plan.pageHeight), "0"));
    StyleRule unbroken("*");
    for (auto property : {"break-before", "break-after", "break-inside"}) unbroken.add(property, "auto");
    sheet.add(unbroken);
    plan.styleSheet = sheet.text();
    return plan;
}

PrintPlan paginatedPlan(const PageMeasurements& measured, double paperWidth, double paperHeight,
                        double margin) {
    PageMeasurements m = sanitized(measured);
    if (!canBePushed(m)) return plainPaginatedPlan(m, paperWidth, paperHeight, margin);
    Paper paper = sanePaper(paperWidth, paperHeight, margin);
    PrintPlan plan;
    fitWidth(plan, paper, documentWidth(m));
    plan.usesViewportPage = true;
    plan.pageRanges = "2-";
    plan.copiesBodyImage = m.canvasFromBody && m.canvasHasImage;

    StyleSheet sheet;
    sheet.add(paperRule("document", paper, plan.shrink));
    sheet.add(
        pageRule("document:first", pixels(m.viewWidth * plan.scale), pixels(m.viewHeight * plan.scale), "0"));
    StyleRule root("html");
    addRootInPlace(root, m);
    RootBox box = boxOnScreen(m);
    box.marginLeft += leftOverflow(m);
    // A page break swallows margins.
    box.padding.top += std::max(0.0, m.rootMarginTop);
    root.add("padding", lengths(box.padding));
    // Where lines run from the right, a left margin counts only if the right one is free.
    root.add("margin", pixels(m.viewHeight) + " auto 0 " + pixels(box.marginLeft));
    // Without a document type html and body fill the view, but not behind the viewport page unless told so.
    bool keepsHeight = m.isQuirky && documentHeight(m) <= m.viewHeight;
    if (keepsHeight) root.add("height", pixels(m.rootHeight));
    addCanvas(root, m, box, m.viewHeight);
    sheet.add(root);
    addBody(sheet, m, keepsHeight);
    plan.styleSheet = sheet.text();
    return plan;
}

PrintPlan plainPaginatedPlan(const PageMeasurements& measured, double paperWidth, double paperHeight,
                             double margin) {
    PageMeasurements m = sanitized(measured);
    Paper paper = sanePaper(paperWidth, paperHeight, margin);
    PrintPlan plan;
    fitWidth(plan, paper, isVertical(m) ? m.viewWidth : documentWidth(m));
    StyleSheet sheet;
    sheet.add(paperRule("", paper, plan.shrink));
    plan.styleSheet = sheet.text();
    return plan;
}

} // namespace qrv::engine
