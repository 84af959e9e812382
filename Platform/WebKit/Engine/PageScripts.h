#pragma once

#include "Platform/WebKit/Engine/PrintLayout.h"

#include <chrono>
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

// A promise (awaitPromise) for the fonts in use and the images of the page and of all its frames of the same
// origin, or for the time to be over. To be evaluated before the page's scripts are switched off: without
// them the timer never ends. Answers {"waitedFor": number of font sets and images, "timedOut": bool}.
std::string readinessScript(std::chrono::milliseconds limit);

} // namespace qrv::engine
