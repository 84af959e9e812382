#pragma once

// The settings in force, and the files that they come from.

#include "Source/Tools/batch/Doctor/Finding.h"

namespace qrv::batch {

/// A finding for each file that is there or cannot be read, in the order of the search, and for each setting.
/// Takes the function that is warned of files that cannot be read (setPreferencesWarning).
Findings examineSettings();

} // namespace qrv::batch
