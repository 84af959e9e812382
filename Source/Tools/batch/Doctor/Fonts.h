#pragma once

// Fonts for the scripts of the world, as the engine found and used them.

#include "Source/Tools/batch/Doctor/Finding.h"
#include "Source/Tools/batch/Doctor/Sample/SampleRun.h"

namespace qrv::batch {

/// A finding for each writing system. Without a font for Latin nothing can be read, which is a problem.
Findings examineFonts(const SampleRun& run);

} // namespace qrv::batch
