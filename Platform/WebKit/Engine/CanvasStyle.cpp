#include "Platform/WebKit/Engine/CanvasStyle.h"

#include "Platform/WebKit/Engine/CanvasBackground.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qrv::engine {
namespace {

// In the document: its top left corner is the start.
struct Area {
    double left;
    double top;
    double width;
    double height;
};

// The lists of the root's background that are the same for all layers or have one item for each.
struct Layers {
    std::string positionsX;
    std::string positionsY;
    std::string sizes;
    std::string repeats;
};

Area borderBox(const PageMeasurements& m) {
    RootBox root = boxOnScreen(m);
    return {root.marginLeft + leftOverflow(m), root.top, root.width(), root.height()};
}

Area inside(const Area& area, const Edges& edges) {
    return {area.left + edges.left, area.top + edges.top, area.width - edges.left - edges.right,
            area.height - edges.top - edges.bottom};
}

// What the canvas's images refer to: one of the root's boxes, or all that is seen where they do not scroll.
Area imageArea(const PageMeasurements& m) {
    if (m.canvasIsFixed) return {0, 0, documentWidth(m), documentHeight(m)};
    RootBox root = boxOnScreen(m);
    Area area = borderBox(m);
    if (m.canvasOrigin == "border-box") return area;
    area = inside(area, root.border);
    return m.canvasOrigin == "content-box" ? inside(area, root.padding) : area;
}

// The engine places the canvas's images as if the root's border box stood at the start of the first page; the
// document's pages come after that.
Layers imageLayers(const PageMeasurements& m, const RootBox& box) {
    Area from = imageArea(m);
    bool isSameSize = from.width == box.width() && from.height == box.height();
    return {movedPositions(m.canvasPositionX, {from.left, from.width}, {0, box.width()}, 0),
            movedPositions(m.canvasPositionY, {from.top, from.height}, {0, box.height()}, m.viewHeight),
            isSameSize ? m.canvasSize
                       : fixedSizes(m.canvasSize, {m.canvasImages, m.canvasRatios}, from.width, from.height),
            m.canvasRepeat};
}

// The four sides, those above and below with the corners.
std::vector<std::pair<Area, std::string_view>> borderSides(const PageMeasurements& m) {
    Area box = borderBox(m);
    double sideTop = box.top + m.rootBorderTop;
    double sideHeight = box.height - m.rootBorderTop - m.rootBorderBottom;
    return {
        {{box.left, box.top, box.width, m.rootBorderTop}, m.rootBorderTopColor},
        {{box.left, sideTop + sideHeight, box.width, m.rootBorderBottom}, m.rootBorderBottomColor},
        {{box.left, sideTop, m.rootBorderLeft, sideHeight}, m.rootBorderLeftColor},
        {{box.left + box.width - m.rootBorderRight, sideTop, m.rootBorderRight, sideHeight},
         m.rootBorderRightColor},
    };
}

// Puts the border's sides before the images there are, which have one item each in all lists then. Returns
// the images to put before those.
std::string prependBorder(Layers& layers, const PageMeasurements& m) {
    std::string images;
    Layers sides;
    for (const auto& [area, color] : borderSides(m)) {
        if (area.width <= 0 || area.height <= 0) continue;
        images.append("linear-gradient(").append(color).append(",").append(color).append("),");
        sides.positionsX += pixels(area.left) + ",";
        sides.positionsY += pixels(area.top + m.viewHeight) + ",";
        sides.sizes += pixels(area.width) + " " + pixels(area.height) + ",";
        sides.repeats += "no-repeat,";
    }
    if (images.empty()) return images;
    auto count = itemCount(m.canvasImages);
    layers = {sides.positionsX + cycled(layers.positionsX, count),
              sides.positionsY + cycled(layers.positionsY, count), sides.sizes + cycled(layers.sizes, count),
              sides.repeats + cycled(layers.repeats, count)};
    return images;
}

} // namespace

void addCanvas(PrintPlan& plan, StyleRule& root, const PageMeasurements& m, const RootBox& box) {
    if (m.canvasFromBody) {
        root.add("background-color", m.canvasColor);
        root.add("background-clip", "border-box");
    }
    Layers layers = imageLayers(m, box);
    if (box.border != boxOnScreen(m).border) plan.imagesOnTop = prependBorder(layers, m);
    if (!m.canvasHasImage && plan.imagesOnTop.empty()) return;
    if (m.canvasFromBody || !plan.imagesOnTop.empty()) plan.imageSource = m.canvasFromBody ? "body" : "root";
    root.add("background-repeat", layers.repeats);
    root.add("background-origin", "border-box");
    root.add("background-attachment", "scroll");
    root.add("background-size", layers.sizes);
    root.add("background-position-x", layers.positionsX);
    root.add("background-position-y", layers.positionsY);
}

} // namespace qrv::engine
