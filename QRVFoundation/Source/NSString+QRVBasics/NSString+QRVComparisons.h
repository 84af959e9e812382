#pragma once

// Comparisons of strings.

#include "Platform/Foundation/NSString.h"

namespace qrv {

// - qrvCompareForDisplay:
/// Compares by the rules of the user's language, ignoring case, with numbers by value: "File 9" before "file
/// 10". nil counts as the empty text.
QRV_EXPORT NSComparisonResult qrvCompareForDisplay(const NSString& self, const NSString& other);
// - qrvCompareLength:
/// Compares by the number of units only; nil has none.
QRV_EXPORT NSComparisonResult qrvCompareLength(const NSString& self, const NSString& other);

} // namespace qrv
