#pragma once

// Writes the binary form of property lists.

#include "Platform/Foundation/NSData.h"

namespace qrv::plist {

/// Throws PropertyListFailure.
NSData writeBinary(const id& root);

} // namespace qrv::plist
