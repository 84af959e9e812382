#pragma once

// The date of documents that are to be the same each time they are made.

#include "Platform/Foundation/NSDate.h"

namespace qrv {

/// Returns the moment that SOURCE_DATE_EPOCH tells in seconds since 1970, at which documents are then to be
/// made (https://reproducible-builds.org/specs/source-date-epoch/). nil if it is not set, and, which is
/// logged, if it is no whole number or outside the years 1970 to 9999. Main thread only.
NSDate sourceDate();

} // namespace qrv
