#include "Platform/Engine/Print/RootBox.h"

#include "Platform/Engine/Print/StyleText.h"

#include <algorithm>

namespace qrv::engine {

std::string lengths(const Edges& edges) {
    return pixels(edges.top) + " " + pixels(edges.right) + " " + pixels(edges.bottom) + " " +
           pixels(edges.left);
}

double RootBox::contentLeft() const {
    return marginLeft + border.left + padding.left;
}

double RootBox::width() const {
    return border.left + padding.left + contentWidth + padding.right + border.right;
}

double RootBox::height() const {
    return border.top + padding.top + contentHeight + padding.bottom + border.bottom;
}

RootBox boxOnScreen(const PageMeasurements& m) {
    return {m.root.marginLeft, m.root.marginTop, m.root.border, m.root.padding, m.root.width, m.root.height};
}

RootBox boxAsView(const PageMeasurements& m) {
    RootBox root = boxOnScreen(m);
    double contentLeft = root.contentLeft();
    double contentTop = m.root.marginTop + root.border.top + root.padding.top;
    RootBox box;
    box.top = std::min(0.0, contentTop);
    box.padding.left = std::max(0.0, contentLeft);
    box.padding.top = std::max(0.0, contentTop);
    double roomAcross = m.view.width - box.padding.left;
    double roomDown = m.view.height - box.top - box.padding.top;
    double below = root.padding.bottom + root.border.bottom + std::max(0.0, m.root.marginBottom);
    box.contentWidth =
        std::clamp(root.contentWidth + std::min(0.0, contentLeft), 0.0, std::max(0.0, roomAcross));
    box.contentHeight = std::clamp(root.contentHeight, 0.0, std::max(0.0, roomDown - below));
    box.padding.right = std::max(0.0, roomAcross - box.contentWidth);
    box.padding.bottom = std::max(0.0, roomDown - box.contentHeight);
    box.border.right = std::max(0.0, m.root.marginLeft + root.width() - m.view.width);
    box.border.bottom = std::max(0.0, m.root.marginTop + root.height() - m.view.height);
    return box;
}

RootBox boxAsContainer(const PageMeasurements& m) {
    RootBox box = boxOnScreen(m);
    box.border.bottom += std::max(0.0, m.view.height - box.height());
    return box;
}

} // namespace qrv::engine
