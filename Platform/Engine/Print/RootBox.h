#pragma once

// The box of the root element, on the screen or as it is to be printed. CSS px.

#include "Platform/Engine/Print/PageMeasurements.h"

#include <string>

namespace qrv::engine {

/// Writes the four lengths as CSS does.
std::string lengths(const Edges& edges);

struct RootBox {
    double marginLeft = 0;
    double top = 0; ///< how far the border box is moved down
    Edges border;
    Edges padding;
    double contentWidth = 0;
    double contentHeight = 0;

    double contentLeft() const;
    double width() const;
    double height() const;
};

RootBox boxOnScreen(const PageMeasurements& measured);

/// The box for a document whose positioned boxes refer to the view. The root's padding box, which contains
/// them when it is printed in one piece, is exactly the view: where the root is larger, the rest goes into
/// its right and bottom border; where it is smaller, into its padding, as do its own margins and borders. The
/// content box stays where it was, up to the view's end. A padding cannot be negative: where the content
/// begins above the view, the whole box moves up; where it begins to the left of it, the content box loses
/// that part.
RootBox boxAsView(const PageMeasurements& measured);

/// The box for a document whose positioned boxes refer to the root: it stays as it is, moved down by the
/// margin, but what is missing to the view's height goes into its border.
RootBox boxAsContainer(const PageMeasurements& measured);

} // namespace qrv::engine
