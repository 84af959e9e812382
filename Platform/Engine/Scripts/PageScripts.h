#pragma once

#include "Platform/Engine/Print/PrintLayout.h"

#include <string>

namespace qrv::engine {

// Sources of JavaScript expressions for Runtime.evaluate with returnByValue, in an isolated world of the main
// frame. They trust nothing that a document can name or overwrite: properties of the document are read
// through its prototype.

// Scrolls to the start of the page, without animation, and answers the fields of PageMeasurements.
std::string measuringScript();

// Puts the plan's style sheet into the page. Answers whether the sheet is in force. Meant to be the last
// thing before printing: there is no way back, except that a later plan replaces an earlier one.
std::string applyingScript(const PrintPlan& plan);

} // namespace qrv::engine
