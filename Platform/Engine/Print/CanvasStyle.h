#pragma once

#include "Platform/Engine/Print/PageMeasurements.h"
#include "Platform/Engine/Print/PrintPlan.h"
#include "Platform/Engine/Print/RootBox.h"
#include "Platform/Engine/Print/StyleText.h"

namespace qrv::engine {

// Adds to the root's rule, and to the plan's images, what makes the canvas look as on the screen when the
// root is printed behind a page of the view's size, with this box. Where that has another border than the
// root on the screen, the border is drawn by the canvas, too: in its colours, solid whatever its style.
void addCanvas(PrintPlan& plan, StyleRule& root, const PageMeasurements& measured, const RootBox& box);

// The same where the root has an effect that works on the canvas: when it prints, the engine leaves the
// canvas out of it. So the root gives its background to the document's head, which is made a box as wide as
// the document and of the given height below everything else.
void addCanvasBox(PrintPlan& plan, StyleSheet& sheet, StyleRule& root, const PageMeasurements& measured,
                  const RootBox& box, double height);

} // namespace qrv::engine
