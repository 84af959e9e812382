#pragma once

// The default paper, on which prints are made.

#include "Source/Tools/batch/Doctor/Finding.h"

namespace qrv::batch {

Findings examinePaper();

} // namespace qrv::batch
