#pragma once

// Whether a file from elsewhere is one that readers of PDF can open.

#include "Platform/Foundation/NSData.h"

namespace qrv {

/// True when readers will find pages in these bytes, if only after mending damage as they do, and when they
/// will ask for a password. False for anything else and for nil.
bool isReadablePDF(const NSData& bytes);

} // namespace qrv
