#pragma once

// The system log: one line on standard error with date, process name, process and thread id, and the same
// text to the machine's syslog where there is one.
//
//     NSLog(u"Error: %@", error);
//     2026-11-21 12:00:00.123 web2pdf[123:456] Error: ...
//
// Nothing is reported to the caller; neither a closed nor a stuck stream does harm. Any thread.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// `NSLog` with its arguments packed. A nil format logs an empty text.
void NSLogv(const NSString& format, const FormatArguments& arguments);

/// Expands the format as NSString::stringWithFormat does and logs the text.
template <class... Arguments>
void NSLog(const NSString& format, const Arguments&... arguments) {
    NSLogv(format, FormatArguments(arguments...));
}

/// Another socket than /dev/log for the following lines.
void setSystemLogSocketForTesting(const std::string& path);

} // namespace qrv
