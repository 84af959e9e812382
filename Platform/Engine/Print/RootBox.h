#pragma once

#include "Platform/Engine/Print/PageMeasurements.h"

#include <string>

namespace qrv::engine {

// The four lengths as CSS writes them.
std::string lengths(const Edges& edges);

// The box of the root element, on the screen or as it is to be printed. CSS px.
struct RootBox {
    double marginLeft = 0;
    double top = 0; // how far the border box is moved down
    Edges border;
    Edges padding;
    double contentWidth = 0;
    double contentHeight = 0;

    double contentLeft() const;
    double width() const;
    double height() const;
};

RootBox boxOnScreen(const PageMeasurements& measured);

// For a document whose positioned boxes refer to the view: the root's padding box, which contains them when
// it is printed in one piece, is the view exactly. What the root is larger than the view goes into its border
// on the right and below, what it is smaller into its padding; its own margins and borders count as padding.
// Its content box is where it was, up to the view's end. A padding cannot be negative: where the content
// begins above the view the whole box is moved up, where it begins to the left of it the content box loses
// that part.
RootBox boxAsView(const PageMeasurements& measured);

// For a document whose positioned boxes refer to the root: its box stays as it is, moved down by the margin,
// but what is missing to the view's height goes into its border.
RootBox boxAsContainer(const PageMeasurements& measured);

} // namespace qrv::engine
