#include "Platform/WebKit/Engine/RootBox.h"

#include "Platform/WebKit/Engine/StyleText.h"

#include <algorithm>

namespace qrv::engine {

std::string lengths(const Edges& edges) {
    return pixels(edges.top) + " " + pixels(edges.right) + " " + pixels(edges.bottom) + " " +
           pixels(edges.left);
}

double RootBox::width(double contentWidth) const {
    return border.left + padding.left + contentWidth + padding.right + border.right;
}

double RootBox::height() const {
    return border.top + padding.top + contentHeight + padding.bottom + border.bottom;
}

RootBox boxOnScreen(const PageMeasurements& m) {
    return {m.rootMarginLeft,
            m.rootMarginTop,
            {m.rootBorderTop, m.rootBorderRight, m.rootBorderBottom, m.rootBorderLeft},
            {m.rootPaddingTop, m.rootPaddingRight, m.rootPaddingBottom, m.rootPaddingLeft},
            m.rootHeight};
}

RootBox boxAsView(const PageMeasurements& m) {
    RootBox box = boxOnScreen(m);
    box.marginLeft = std::min(0.0, m.rootMarginLeft);
    box.top = 0;
    box.padding.top += std::max(0.0, m.rootMarginTop);
    box.padding.left += std::max(0.0, m.rootMarginLeft);
    box.padding.right += std::max(0.0, m.viewWidth - box.width(m.rootWidth));
    double excess = box.height() + std::max(0.0, m.rootMarginBottom) - m.viewHeight;
    if (excess > 0 && m.rootHeightIsAuto) {
        box.contentHeight =
            std::max(0.0, m.viewHeight - box.border.top - box.padding.top - box.padding.bottom);
        box.border.bottom = excess;
    } else {
        box.padding.bottom += std::max(0.0, m.viewHeight - box.height());
    }
    return box;
}

RootBox boxAsContainer(const PageMeasurements& m) {
    RootBox box = boxOnScreen(m);
    box.border.bottom += std::max(0.0, m.viewHeight - box.height());
    return box;
}

} // namespace qrv::engine
