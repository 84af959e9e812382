#include "Platform/Logging/NSLog.h"

#include "Platform/Logging/LogSocket.h"
#include "Platform/Logging/StandardError.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace qrv {

namespace {

/// Facility "user", severity "notice".
constexpr int syslogPriority = 13;

LogSocket& systemLog() {
    static LogSocket& socket = *new LogSocket("/dev/log"); // lines may come until the very end
    return socket;
}

std::string processLabel() {
    return std::string(program_invocation_short_name) + "[" + std::to_string(getpid());
}

/// "2026-11-21 12:00:00.123"
std::string dateForReaders(const tm& time, long nanoseconds) {
    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &time);
    std::snprintf(text.data() + length, text.size() - length, ".%03ld", nanoseconds / 1000000);
    return text.data();
}

/// "Nov 21 12:00:00", as the syslog protocol has it.
std::string dateForSyslog(const tm& time) {
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%b %e %H:%M:%S", &time)};
}

} // namespace

void NSLogv(const NSString& format, const FormatArguments& arguments) {
    const std::string text = NSString::stringWithFormat_arguments(format, arguments).utf8();
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    const std::string process = processLabel();
    writeStandardErrorLine(dateForReaders(local, now.tv_nsec) + " " + process + ":" +
                           std::to_string(gettid()) + "] " + text + "\n");
    systemLog().send("<" + std::to_string(syslogPriority) + ">" + dateForSyslog(local) + " " + process +
                         "]: " + text,
                     false);
}

void setSystemLogSocketForTesting(const std::string& path) {
    systemLog().setPath(path);
}

} // namespace qrv
