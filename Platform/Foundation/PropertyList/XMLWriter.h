#pragma once

// Writes the XML form of property lists.

#include "Platform/Foundation/NSData.h"

namespace qrv::plist {

/// Throws PropertyListFailure.
NSData writeXML(const id& root);

} // namespace qrv::plist
