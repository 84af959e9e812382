#pragma once

// The background of the canvas in print.

#include "Platform/Engine/Print/PageMeasurements.h"
#include "Platform/Engine/Print/PrintPlan.h"
#include "Platform/Engine/Print/RootBox.h"
#include "Platform/Engine/Print/StyleText.h"

namespace qrv::engine {

/// Adds to the root's rule, and to the plan's images, what makes the canvas look as on the screen when the
/// root is printed in this box behind a page of the view's size. Where the box has other borders than the
/// root on the screen, the canvas draws the borders, too: in their colours, and solid whatever their style.
void addCanvas(PrintPlan& plan, StyleRule& root, const PageMeasurements& measured, const RootBox& box);

/// The same for a root with an effect that works on the canvas, from which the engine excludes the canvas
/// when it prints. The root gives its background to the document's head, which becomes a box below everything
/// else, as wide as the document and of the given height.
void addCanvasBox(PrintPlan& plan, StyleSheet& sheet, StyleRule& root, const PageMeasurements& measured,
                  const RootBox& box, double height);

} // namespace qrv::engine
