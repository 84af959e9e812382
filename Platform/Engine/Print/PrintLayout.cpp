#include "Platform/Engine/Print/PrintLayout.h"

#include "Platform/Engine/PDF/LengthUnits.h"
#include "Platform/Engine/Print/CanvasStyle.h"
#include "Platform/Engine/Print/RootBox.h"
#include "Platform/Engine/Print/StyleText.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace qrv::engine {
namespace {

// The names of the pages that hold the document, and of the first one, which is the view.
constexpr char documentPage[] = "document";
constexpr char viewportPage[] = "document:first";

constexpr double smallestScale = 0.1; // the engine takes no smaller one
constexpr double smallestContent = 72;
constexpr double smallestPaper = 72;
constexpr double largestPaper = 14400;
// 3,000 elements side by side: a third of a second more. 9,000 words in elements of their own in one
// paragraph took 40 seconds instead of 2.
constexpr double largestStructureCost = 1e7;
// Just enough for a root as high as the view to miss the end of the first page.
constexpr double pushMargin = 0.05;

struct Paper {
    NSSize size;
    double margin;

    double printableWidth() const { return size.width - 2 * margin; }

    double printableHeight() const { return size.height - 2 * margin; }
};

double saneLength(double value, double low, double high) {
    return std::isnan(value) ? low : std::clamp(value, low, high);
}

Paper sanePaper(NSSize size, double margin) {
    size.width = saneLength(size.width, smallestPaper, largestPaper);
    size.height = saneLength(size.height, smallestPaper, largestPaper);
    double room = (std::min(size.width, size.height) - smallestContent) / 2;
    return {size, saneLength(margin, 0, room)};
}

bool isTable(const PageMeasurements& m) {
    return m.root.display.find("table") != std::string::npos;
}

// The body's writing mode is the document's; the viewport takes it from there.
bool isVertical(const PageMeasurements& m) {
    return m.body.writingMode != "horizontal-tb";
}

// Pages of vertical text follow each other from side to side.
bool canBePushed(const PageMeasurements& m) {
    return m.root.isHtml && !isVertical(m);
}

// What both modes ask of the root: stand in normal flow on pages of our name, with the width it has on the
// screen, nothing cut off, and overflow to the right only.
void addRootInPlace(StyleRule& root, const PageMeasurements& m, const RootBox& box) {
    if (isTable(m)) root.add("display", "block"); // tables do not take size containment
    root.add("page", documentPage);
    root.add("position", "relative");
    root.add("inset", "auto");
    root.add("float", "none");
    root.add("overflow", "visible");
    root.add("zoom", "1"); // the engine drops it, hence the body's
    root.add("direction", "ltr");
    root.add("writing-mode", "horizontal-tb");
    root.add("box-sizing", "content-box");
    root.add("width", pixels(box.contentWidth));
    root.add("min-width", "0");
    root.add("max-width", "none");
}

// What the body has to keep by order, because the root no longer gives it that.
struct BodyPins {
    bool across = false;        // its width and place in the root
    double left = 0;            // its border box, from the root's content edge
    bool minimumHeight = false; // these two together with its width only
    bool height = false;
};

void addBody(StyleSheet& sheet, const PageMeasurements& m, const BodyPins& pins) {
    if (!m.body.exists) return;
    StyleRule body("body");
    if (m.root.zoom != 1) body.add("zoom", number(m.root.zoom * m.body.zoom));
    body.add("direction", m.body.direction);
    body.add("writing-mode", m.body.writingMode);
    if (m.body.overflowSpreads) body.add("overflow", "visible");
    if (m.canvas.isBody) body.add("background", "none");
    if (pins.across) {
        body.add("box-sizing", "content-box");
        body.add("margin-left", pixels(pins.left));
        for (auto property : {"width", "min-width", "max-width"}) body.add(property, pixels(m.body.width));
    }
    if (pins.minimumHeight) body.add("min-height", pixels(m.body.height));
    if (pins.height) body.add("height", pixels(m.body.height));
    sheet.add(body);
}

// The body where it was, in a root of this box.
BodyPins pinsIn(const RootBox& box, const PageMeasurements& m) {
    RootBox root = boxOnScreen(m);
    double moved = root.contentLeft() - box.contentLeft();
    bool isCutAcross = moved != 0 || box.contentWidth < root.contentWidth;
    bool isCutDown = box.contentHeight < root.contentHeight;
    bool asksForHeight = !m.root.heightIsAuto || m.root.display.find("flex") != std::string::npos;
    BodyPins pins;
    pins.minimumHeight = isCutDown && asksForHeight;
    pins.height = isCutDown && !m.root.heightIsAuto && !m.body.heightIsAuto;
    pins.across = pins.minimumHeight || isCutAcross || isTable(m) || runsRightToLeft(m);
    pins.left = m.body.marginLeft + moved / (m.root.zoom * m.body.zoom);
    return pins;
}

// Size containment is enough to print the root in one piece. Fixed boxes then refer to the first page, which
// is the view; but their place is the left of the page even where the document reaches to the left of the
// view.
bool containsFixedBoxes(const PageMeasurements& m) {
    return !m.root.isContainer || m.root.containsFixed || leftOverflow(m) > 0;
}

void addContainedBox(StyleRule& root, const PageMeasurements& m, const RootBox& box) {
    root.add("contain", containsFixedBoxes(m) ? "size layout" : "size");
    root.add("top", pixels(box.top));
    // Without a document type the root fills its page but for its margins, and its content asks for that
    // height.
    double marginBottom = m.isQuirky ? documentHeight(m) - box.height() : 0;
    root.add("margin", lengths({pushMargin, 0, marginBottom, box.marginLeft}));
    root.add("border-width", lengths(box.border));
    if (box.border != boxOnScreen(m).border) {
        root.add("border-style", "solid");
        root.add("border-color", "transparent");
        root.add("border-image", "none");
    }
    root.add("padding", lengths(box.padding));
    root.add("height", m.root.heightIsAuto ? "auto" : pixels(box.contentHeight));
    root.add("contain-intrinsic-height", pixels(box.contentHeight));
    root.add("min-height", "0");
    root.add("max-height", "none");
}

// The engine repeats fixed boxes on every page, over its text. In a root that contains them each appears
// once; and where the root is no higher than the view, with the rest of the document hanging out of it, they
// stand where they stand in the view. A root that other positioned boxes refer to keeps its height: fixed
// boxes then refer to the whole document. Margins become padding, since a page break swallows them.
RootBox pagedBox(const PageMeasurements& m) {
    if (m.root.isContainer) {
        RootBox box = boxOnScreen(m);
        box.padding.top += std::max(0.0, m.root.marginTop);
        return box;
    }
    RootBox box = boxAsView(m);
    box.border = {};
    return box;
}

void addPagedBox(StyleRule& root, const PageMeasurements& m, const RootBox& box, double pageLength) {
    root.add("contain", "layout");
    // Without a document type the root fills its page but for its margins, as it did the view.
    double marginBottom = m.isQuirky ? m.root.marginBottom + pageLength - 2 * m.view.height : 0;
    // Where lines run from the right, a left margin counts only if the right one is free.
    root.add("margin",
             pixels(m.view.height) + " auto " + pixels(marginBottom) + " " + pixels(box.marginLeft));
    root.add("border-width", lengths(box.border));
    root.add("padding", lengths(box.padding));
    if (m.root.isContainer) return;
    if (m.root.heightIsAuto) {
        root.add("min-height", pixels(box.contentHeight));
        root.add("max-height", pixels(box.contentHeight));
    } else {
        root.add("height", pixels(box.contentHeight));
    }
}

// The canvas in a root of this box; where it has to be a box itself, that is of the height given.
void addBackground(PrintPlan& plan, StyleSheet& sheet, StyleRule& root, const PageMeasurements& m,
                   const RootBox& box, double height) {
    if (m.root.hasEffect) {
        addCanvasBox(plan, sheet, root, m, box, height);
    } else {
        addCanvas(plan, root, m, box);
    }
}

// The engine answers media queries from the paper that it is told, whatever the sheets' own sizes are: it is
// told the view. It rounds the height up.
NSSize paperLikeView(const PageMeasurements& m, double scale) {
    constexpr double roundedUp = 0.5;
    return {m.view.width * scale / pixelsPerInch, (m.view.height - roundedUp) * scale / pixelsPerInch};
}

// One page for the whole document, printed larger by `shrink` than wanted.
PrintPlan wholeDocumentPlan(const PageMeasurements& m, double shrink) {
    PrintPlan plan;
    plan.isStructured = m.structureCost <= largestStructureCost;
    plan.shrink = shrink;
    plan.scale = shrink * pixelsPerPoint;
    plan.page = {documentWidth(m), documentHeight(m)};
    plan.documentLength = documentHeight(m);
    plan.paper = paperLikeView(m, plan.scale);
    plan.pageLength = plan.page.height;
    return plan;
}

// How far the document has to be scaled down so that the side along which its lines run fits the paper. The
// engine goes down to a tenth only, and at any scale but 1 it misplaces vertical text that begins at the
// right: what is longer is printed on larger pages, which are shrunk afterwards.
PrintPlan sheetsPlan(const PageMeasurements& m, const Paper& paper) {
    PrintPlan plan;
    plan.isStructured = m.structureCost <= largestStructureCost;
    plan.isOnSheets = true;
    plan.documentLength = isVertical(m) ? documentWidth(m) : documentHeight(m);
    double needed = isVertical(m) ? documentHeight(m) : documentWidth(m);
    double available = (isVertical(m) ? paper.printableHeight() : paper.printableWidth()) * pixelsPerPoint;
    double smallest = isVertical(m) ? 1 : smallestScale;
    plan.shrink = std::max(1.0, needed * smallest / available);
    plan.scale = std::clamp(plan.shrink * available / needed, smallest, 1.0);
    plan.page = paper.size;
    plan.paper = paperLikeView(m, plan.scale);
    plan.pageLength = paper.printableHeight() * plan.shrink * pixelsPerPoint / plan.scale;
    plan.pageMargin = paper.margin * plan.shrink;
    plan.isDivisible = !isVertical(m) && !m.canvas.hasImage;
    return plan;
}

// The engine repeats the heads and feet of tables on each sheet where they are not to be broken, which it
// says itself for the media type of print only.
void addRepeatedHeads(StyleSheet& sheet) {
    StyleRule heads("thead,tfoot");
    heads.add("break-inside", "avoid");
    sheet.add(heads);
}

StyleRule paperRule(std::string_view selector, const Paper& paper, double shrink) {
    return pageRule(selector, points(paper.size.width * shrink), points(paper.size.height * shrink),
                    points(paper.margin * shrink));
}

} // namespace

NSSize screenView(NSSize paper) {
    NSSize size = sanePaper(paper, 0).size;
    return {std::round(size.width), std::round(size.height)};
}

NSSize paginatedView(NSSize size, double margin) {
    Paper paper = sanePaper(size, margin);
    return {std::floor(paper.printableWidth() * pixelsPerPoint),
            std::floor(paper.printableHeight() * pixelsPerPoint)};
}

PrintPlan screenPlan(const PageMeasurements& m) {
    if (!canBePushed(m)) return plainScreenPlan(m);
    PrintPlan plan = wholeDocumentPlan(m, 1);
    plan.usesViewportPage = true;
    plan.viewportPageLength = m.view.height;
    plan.pageRanges = "2";

    StyleSheet sheet;
    sheet.add(pageRule(documentPage, points(plan.page.width), points(plan.page.height), "0"));
    sheet.add(pageRule(viewportPage, points(m.view.width), points(m.view.height), "0"));
    StyleRule root("html");
    RootBox box = m.root.isContainer ? boxAsContainer(m) : boxAsView(m);
    BodyPins pins = pinsIn(box, m);
    box.marginLeft += leftOverflow(m);
    addRootInPlace(root, m, box);
    addContainedBox(root, m, box);
    addBackground(plan, sheet, root, m, box, documentHeight(m));
    sheet.add(root);
    addBody(sheet, m, pins);
    plan.styleSheet = sheet.text();
    return plan;
}

PrintPlan plainScreenPlan(const PageMeasurements& m) {
    // At any scale but 1 the engine misplaces documents whose text runs in columns from the right.
    PrintPlan plan = wholeDocumentPlan(m, 1 / pixelsPerPoint);
    plan.pageRanges = "1";
    StyleSheet sheet;
    sheet.add(pageRule("", pixels(plan.page.width), pixels(plan.page.height), "0"));
    StyleRule unbroken("*");
    for (auto property : {"break-before", "break-after", "break-inside"}) unbroken.add(property, "auto");
    sheet.add(unbroken);
    plan.styleSheet = sheet.text();
    return plan;
}

PrintPlan paginatedPlan(const PageMeasurements& m, NSSize size, double margin) {
    if (!canBePushed(m)) return plainPaginatedPlan(m, size, margin);
    Paper paper = sanePaper(size, margin);
    PrintPlan plan = sheetsPlan(m, paper);
    plan.usesViewportPage = true;
    plan.viewportPageLength = m.view.height;
    plan.pageRanges = "2-";

    StyleSheet sheet;
    sheet.add(paperRule(documentPage, paper, plan.shrink));
    addRepeatedHeads(sheet);
    sheet.add(
        pageRule(viewportPage, pixels(m.view.width * plan.scale), pixels(m.view.height * plan.scale), "0"));
    StyleRule root("html");
    RootBox box = pagedBox(m);
    BodyPins pins = pinsIn(box, m);
    box.marginLeft += leftOverflow(m);
    addRootInPlace(root, m, box);
    addPagedBox(root, m, box, plan.pageLength);
    if (m.root.hasEffect || (pins.minimumHeight && m.body.height > m.view.height)) plan.isDivisible = false;
    double toEndOfLastSheet = std::ceil(documentHeight(m) / plan.pageLength) * plan.pageLength - 1;
    addBackground(plan, sheet, root, m, box, toEndOfLastSheet);
    sheet.add(root);
    addBody(sheet, m, pins);
    plan.styleSheet = sheet.text();
    return plan;
}

PrintPlan plainPaginatedPlan(const PageMeasurements& m, NSSize size, double margin) {
    Paper paper = sanePaper(size, margin);
    PrintPlan plan = sheetsPlan(m, paper);
    // Pages of vertical text do not follow each other downwards.
    if (isVertical(m)) plan.pageLength = 0;
    StyleSheet sheet;
    sheet.add(paperRule("", paper, plan.shrink));
    addRepeatedHeads(sheet);
    plan.styleSheet = sheet.text();
    return plan;
}

} // namespace qrv::engine
