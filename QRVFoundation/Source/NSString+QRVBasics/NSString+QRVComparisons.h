#pragma once

// Orders of strings.

#include "Platform/Foundation/NSString.h"

namespace qrv {

// - qrvCompareForDisplay:
/// By the user's language, whatever the case, numbers by their value: "File 9" before "file 10". nil compares
/// as the empty text.
NSComparisonResult qrvCompareForDisplay(const NSString& self, const NSString& other);
// - qrvCompareLength:
/// By the number of units alone; nil has none.
NSComparisonResult qrvCompareLength(const NSString& self, const NSString& other);

} // namespace qrv
