#pragma once

// The environment variables that change conversions.

#include "Source/Tools/batch/Doctor/Finding.h"

#include <string>
#include <vector>

namespace qrv::batch {

/// A finding for each one that is set. The log is that of a conversion, in which the tool says which values
/// do not count.
Findings examineVariables(const std::vector<std::string>& log);

} // namespace qrv::batch
