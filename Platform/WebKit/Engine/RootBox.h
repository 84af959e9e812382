#pragma once

#include "Platform/WebKit/Engine/PageMeasurements.h"

#include <string>

namespace qrv::engine {

struct Edges {
    double top = 0;
    double right = 0;
    double bottom = 0;
    double left = 0;

    bool operator==(const Edges&) const = default;
};

// The four lengths as CSS writes them.
std::string lengths(const Edges& edges);

// The box of the root element, on the screen or as it is to be printed. CSS px.
struct RootBox {
    double marginLeft = 0;
    double top = 0; // how far the border box is moved down
    Edges border;
    Edges padding;
    double contentHeight = 0;

    double width(double contentWidth) const;
    double height() const;
};

RootBox boxOnScreen(const PageMeasurements& measured);

// For a document whose positioned boxes refer to the view: the root's padding box, which contains them when
// it is printed in one piece, is the view exactly. What the root is higher than the view goes into its
// border, what it is lower or narrower into its padding, margins included. The content box keeps its size
// where children may ask for it.
RootBox boxAsView(const PageMeasurements& measured);

// For a document whose positioned boxes refer to the root: its padding box stays as it is, and what is
// missing to the view's height goes into its border, as do the margins above and below.
RootBox boxAsContainer(const PageMeasurements& measured);

} // namespace qrv::engine
