#include "Platform/Engine/Print/CanvasStyle.h"

#include "Platform/Engine/Print/CanvasBackground.h"

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
    if (m.canvas.isFixed) return {0, 0, documentWidth(m), documentHeight(m)};
    RootBox root = boxOnScreen(m);
    Area area = borderBox(m);
    if (m.canvas.origin == "border-box") return area;
    area = inside(area, root.border);
    return m.canvas.origin == "content-box" ? inside(area, root.padding) : area;
}

// Where the lists are to hold: a box of this size, whose images' places are counted from so much above the
// document.
struct Frame {
    double width;
    double height;
    double down;
};

Layers imageLayers(const PageMeasurements& m, const Frame& frame) {
    Area from = imageArea(m);
    bool isSameSize = from.width == frame.width && from.height == frame.height;
    return {movedPositions(m.canvas.positionX, {from.left, from.width}, {0, frame.width}, 0),
            movedPositions(m.canvas.positionY, {from.top, from.height}, {0, frame.height}, frame.down),
            isSameSize
                ? m.canvas.size
                : fixedSizes(m.canvas.size, {m.canvas.images, m.canvas.ratios}, from.width, from.height),
            m.canvas.repeat};
}

// The four sides, those above and below with the corners.
std::vector<std::pair<Area, std::string_view>> borderSides(const PageMeasurements& m) {
    Area box = borderBox(m);
    double sideTop = box.top + m.root.border.top;
    double sideHeight = box.height - m.root.border.top - m.root.border.bottom;
    return {
        {{box.left, box.top, box.width, m.root.border.top}, m.root.borderColor.top},
        {{box.left, sideTop + sideHeight, box.width, m.root.border.bottom}, m.root.borderColor.bottom},
        {{box.left, sideTop, m.root.border.left, sideHeight}, m.root.borderColor.left},
        {{box.left + box.width - m.root.border.right, sideTop, m.root.border.right, sideHeight},
         m.root.borderColor.right},
    };
}

// Puts the border's sides before the images there are, which have one item each in all lists then. Returns
// the images to put before those.
std::string prependBorder(Layers& layers, const PageMeasurements& m, double down) {
    std::string images;
    Layers sides;
    for (const auto& [area, color] : borderSides(m)) {
        if (area.width <= 0 || area.height <= 0) continue;
        images.append("linear-gradient(").append(color).append(",").append(color).append("),");
        sides.positionsX += pixels(area.left) + ",";
        sides.positionsY += pixels(area.top + down) + ",";
        sides.sizes += pixels(area.width) + " " + pixels(area.height) + ",";
        sides.repeats += "no-repeat,";
    }
    if (images.empty()) return images;
    auto count = itemCount(m.canvas.images);
    layers = {sides.positionsX + cycled(layers.positionsX, count),
              sides.positionsY + cycled(layers.positionsY, count), sides.sizes + cycled(layers.sizes, count),
              sides.repeats + cycled(layers.repeats, count)};
    return images;
}

void addLayers(StyleRule& rule, const Layers& layers) {
    rule.add("background-repeat", layers.repeats);
    rule.add("background-origin", "border-box");
    rule.add("background-attachment", "scroll");
    rule.add("background-size", layers.sizes);
    rule.add("background-position-x", layers.positionsX);
    rule.add("background-position-y", layers.positionsY);
}

// The engine places the canvas's images as if the root's border box stood at the start of the first page; the
// document's pages come after that.
Frame rootFrame(const PageMeasurements& m, const RootBox& box) {
    return {box.width(), box.height(), m.view.height};
}

bool losesBorder(const PageMeasurements& m, const RootBox& box) {
    return box.border != boxOnScreen(m).border;
}

} // namespace

void addCanvas(PrintPlan& plan, StyleRule& root, const PageMeasurements& m, const RootBox& box) {
    if (m.canvas.isBody) {
        root.add("background-color", m.canvas.color);
        root.add("background-clip", "border-box");
    }
    Frame frame = rootFrame(m, box);
    Layers layers = imageLayers(m, frame);
    if (losesBorder(m, box)) plan.imagesOnTop = prependBorder(layers, m, frame.down);
    if (!m.canvas.hasImage && plan.imagesOnTop.empty()) return;
    if (m.canvas.isBody || !plan.imagesOnTop.empty()) plan.imageSource = m.canvas.isBody ? "body" : "root";
    plan.imageTarget = "html";
    addLayers(root, layers);
}

void addCanvasBox(PrintPlan& plan, StyleSheet& sheet, StyleRule& root, const PageMeasurements& m,
                  const RootBox& box, double height) {
    root.add("background", "none");
    StyleRule contents("head *");
    contents.add("display", "none");
    sheet.add(contents);
    StyleRule head("head");
    head.add("all", "initial");
    head.add("display", "block");
    head.add("position", "absolute");
    head.add("left", pixels(-box.marginLeft - box.border.left));
    head.add("top", pixels(-box.top - box.border.top));
    head.add("width", pixels(documentWidth(m)));
    head.add("height", pixels(height));
    head.add("z-index", "-2147483647");
    head.add("background-color", m.canvas.color);
    Layers layers = imageLayers(m, {documentWidth(m), documentHeight(m), 0});
    if (losesBorder(m, box)) plan.imagesOnTop = prependBorder(layers, m, 0);
    plan.imageTarget = "head";
    plan.imageSource = m.canvas.isBody ? "body" : "root";
    addLayers(head, layers);
    sheet.add(head);
}

} // namespace qrv::engine
