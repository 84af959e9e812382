#pragma once

// Dates as PDF files write them: "D:20240131235959+01'00'".

#include "Platform/Foundation/NSDate.h"

#include <string>

namespace qrv {

/// nil when the text is not a complete date, to the second, with a time zone or none (then UTC).
NSDate dateFromPDFText(const std::string& text);

/// The moment in UTC, to the second; empty for nil and for years before 0 or after 9999.
std::string pdfTextFromDate(const NSDate& date);

} // namespace qrv
