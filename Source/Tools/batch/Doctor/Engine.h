#pragma once

// The engine and the tool: whether they are there, and whether they work.

#include "Source/Tools/batch/Doctor/Finding.h"
#include "Source/Tools/batch/Doctor/Sample/SampleRun.h"

#include <string>

namespace qrv::batch {

/// What is known before anything is run.
Findings examineEngine(const std::string& tool);

/// What the conversion of the sample says of them.
Findings examineConversion(const SampleRun& run);

} // namespace qrv::batch
