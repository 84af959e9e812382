#pragma once

// What keeps the engine from the machine and the network, as it was while it ran.

#include "Source/Tools/batch/Doctor/Finding.h"
#include "Source/Tools/batch/Doctor/Sample/SampleRun.h"

namespace qrv::batch {

/// Of a conversion that ended well or not. What could not be seen is said to be unknown.
Findings examineIsolation(const SampleRun& run);

} // namespace qrv::batch
