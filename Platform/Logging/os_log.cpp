#include "Platform/Logging/os_log.h"

#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Logging/LogSocket.h"

namespace qrv {

namespace {

// Implements the journal's native protocol itself: its client library waits for a daemon that hangs, and
// cannot be given another socket.

LogSocket& journal() {
    static LogSocket& socket = *new LogSocket("/run/systemd/journal/socket"); // never destroyed
    return socket;
}

/// Appends "NAME=value"; or, if the value has several lines, the name, the length in eight bytes and the
/// value.
void appendField(std::string& entry, std::string_view name, std::string_view value) {
    entry.append(name);
    if (value.find('\n') == std::string_view::npos) {
        entry.append("=");
    } else {
        entry.append("\n");
        for (int shift = 0; shift < 64; shift += 8) {
            entry.push_back(static_cast<char>((static_cast<std::uint64_t>(value.size()) >> shift) & 0xFF));
        }
    }
    entry.append(value).append("\n");
}

} // namespace

os_log_t os_log_create(std::string_view subsystem, std::string_view category) {
    return std::make_shared<OSLogCategory>(OSLogCategory{std::string(subsystem), std::string(category)});
}

void os_log_with_type(const os_log_t& log, os_log_type_t type, std::string_view text) {
    if (!log || !journal().mayHaveReader()) return;
    std::string entry;
    entry.reserve(text.size() + log->subsystem.size() + log->category.size() + 128);
    appendField(entry, "MESSAGE", text);
    appendField(entry, "PRIORITY", type == OS_LOG_TYPE_ERROR ? "3" : "5"); // as in syslog(3)
    appendField(entry, "SYSLOG_IDENTIFIER", NSProcessInfo::processInfo().processName().utf8());
    appendField(entry, "SUBSYSTEM", log->subsystem);
    appendField(entry, "CATEGORY", log->category);
    journal().send(entry, true);
}

bool hasJournal() {
    return journal().hasReader();
}

void setJournalSocketForTesting(const std::string& path) {
    journal().setPath(path);
}

} // namespace qrv
