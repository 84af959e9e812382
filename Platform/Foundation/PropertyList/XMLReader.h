#pragma once

// Reads the XML form of property lists.

#include "Platform/Foundation/NSData.h"

namespace qrv::plist {

/// Throws PropertyListFailure.
id readXML(const NSData& data);

} // namespace qrv::plist
