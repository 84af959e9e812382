#pragma once

// Universally unique identifiers.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// A new random identifier (RFC 4122, version 4) in capital letters:
/// "68753A44-4D6F-4226-9C60-0050E4C00067". nil when the system gives no random numbers.
NSString newUUIDString();

} // namespace qrv
