#pragma once

// Whether PDF readers can open a file.

#include "Platform/Foundation/NSData.h"

namespace qrv {

/// True if readers find pages in these bytes, after repairing damage if necessary, or ask for a password.
/// False for anything else and for nil.
bool isReadablePDF(const NSData& bytes);

} // namespace qrv
