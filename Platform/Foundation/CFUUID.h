#pragma once

// Universally unique identifiers.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// Makes a random identifier (version 4) in capital letters: "68753A44-4D6F-4226-9C60-0050E4C00067". Returns
/// nil if the system provides no random numbers.
QRV_EXPORT NSString newUUIDString();

} // namespace qrv
