#pragma once

// Dates in PDF syntax: "D:20240131235959+01'00'".

#include "Platform/Foundation/NSDate.h"

#include <string>

namespace qrv {

/// Returns nil unless the text is a complete date, to the second, with a time zone or without one (then UTC).
NSDate dateFromPDFText(const std::string& text);

/// Formats the date in UTC, to the second; empty for nil and for years outside 0 to 9999.
std::string pdfTextFromDate(const NSDate& date);

} // namespace qrv
