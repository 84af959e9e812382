#pragma once

// Reads the binary form of property lists.

#include "Platform/Foundation/NSData.h"

namespace qrv::plist {

/// Throws PropertyListFailure.
id readBinary(const NSData& data);

/// Whether the bytes begin like a binary property list.
bool isBinary(const NSData& data);

} // namespace qrv::plist
