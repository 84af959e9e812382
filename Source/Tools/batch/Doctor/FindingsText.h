#pragma once

// Findings as people and scripts read them.

#include "Source/Tools/batch/Doctor/Finding.h"

#include <string>

namespace qrv::batch {

/// Whether conversions will work here: there is no problem.
bool isFit(const Findings& findings);

/// A block for each area, a line for each finding, and below it what to do about it. The marks can be told
/// apart without colours. What could do something to a terminal is made harmless.
std::string textOf(const Findings& findings, bool hasColours);

/// One object in one line: "fit", how many "problems" and "notes" there are, and the "findings", each with
/// "area", "check", "mark" ("ok", "note" or "problem"), "text", "advice" (null for none) and its facts.
std::string jsonTextOf(const Findings& findings);

} // namespace qrv::batch
