#include "Platform/Logging/NSLog.h"

#include "Platform/Foundation/NSDateFormatter.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Logging/LogSocket.h"
#include "Platform/Logging/StandardError.h"

#include <unistd.h>

namespace qrv {

namespace {

/// Facility "user", severity "notice".
constexpr const char* syslogPriority = "<13>";

// What logging needs is never destroyed: lines may be logged until the very end of the process.

LogSocket& systemLog() {
    static LogSocket& socket = *new LogSocket("/dev/log");
    return socket;
}

const NSDateFormatter& makeFormatter(const char16_t* pattern) {
    auto& formatter = *new NSDateFormatter;
    formatter.setDateFormat(pattern);
    return formatter;
}

/// "2026-11-21 12:00:00.123"
std::string dateForReaders(const NSDate& date) {
    static const NSDateFormatter& formatter = makeFormatter(u"yyyy-MM-dd HH:mm:ss.SSS");
    return formatter.stringFromDate(date).utf8();
}

/// "Nov  1 12:00:00", as syslog requires it.
std::string dateForSyslog(const NSDate& date) {
    static const NSDateFormatter& formatter = makeFormatter(u"MMM dd HH:mm:ss");
    std::string text = formatter.stringFromDate(date).utf8();
    if (text.size() > 4 && text[4] == '0') text[4] = ' ';
    return text;
}

} // namespace

void NSLogv(const NSString& format, const FormatArguments& arguments) {
    logText(NSString::stringWithFormat_arguments(format, arguments));
}

void logText(const NSString& line) {
    const std::string text = line.utf8();
    const NSDate now = NSDate::date();
    const std::string process = NSProcessInfo::processInfo().processName().utf8() + "[" +
                                std::to_string(NSProcessInfo::processInfo().processIdentifier());
    writeStandardErrorLine(dateForReaders(now) + " " + process + ":" + std::to_string(gettid()) + "] " +
                           text + "\n");
    systemLog().send(syslogPriority + dateForSyslog(now) + " " + process + "]: " + text, false);
}

void setSystemLogSocketForTesting(const std::string& path) {
    systemLog().setPath(path);
}

} // namespace qrv
