#pragma once

// The system log: writes one line with date, process name, process and thread id to standard error, and the
// same text to the machine's syslog, if there is one.
//
//     NSLog(u"Error: %@", error);
//     2026-11-21 12:00:00.123 web2pdf[123:456] Error: ...
//
// Failures are not reported, and a closed or stalled stream does no harm. Any thread.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// `NSLog` with packed arguments. A nil format logs an empty text.
QRV_EXPORT void NSLogv(const NSString& format, const FormatArguments& arguments);
/// `NSLog` of an expanded text.
QRV_EXPORT void logText(const NSString& text);

/// Logs the expansion of a format (see NSString::stringWithFormat).
template <class... Arguments>
void NSLog(FormatFor<Arguments...> format, const Arguments&... arguments) {
    logText(NSString::expanded(format, PassedFormatArguments(arguments...)));
}

/// Replaces /dev/log for the following lines.
void setSystemLogSocketForTesting(const std::string& path);

} // namespace qrv
