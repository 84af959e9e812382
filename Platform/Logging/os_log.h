#pragma once

// The unified log, stored in the systemd journal. Each entry has a subsystem and a category, so that
// `journalctl SUBSYSTEM=org.quillvane.web2pdf` shows the tool's.
//
//     const os_log_t log = os_log_create("org.quillvane.web2pdf", "QRVLogger");
//     os_log_with_type(log, OS_LOG_TYPE_ERROR, "text");
//
// Entries for a journal that is missing or cannot keep up are dropped silently: logging never waits and never
// fails. Any thread.

#include "Platform/Foundation/Export.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qrv {

/// The subsystem and category of a handle's entries.
struct QRV_EXPORT OSLogCategory {
    std::string subsystem;
    std::string category;
};

/// A handle for logging, released with its last copy.
using os_log_t = std::shared_ptr<const OSLogCategory>;

enum os_log_type_t : std::uint8_t { OS_LOG_TYPE_ERROR = 0x10 };

QRV_EXPORT os_log_t os_log_create(std::string_view subsystem, std::string_view category);

/// Logs the UTF-8 text unchanged (as with the format "%{public}s"), with the fields MESSAGE, PRIORITY (3),
/// SYSLOG_IDENTIFIER (the process name), SUBSYSTEM and CATEGORY; the journal itself adds time, user and
/// process. A null handle logs nothing.
QRV_EXPORT void os_log_with_type(const os_log_t& log, os_log_type_t type, std::string_view text);

/// Whether there is a journal that takes entries now.
QRV_EXPORT bool hasJournal();

/// Replaces the journal's socket for the following entries.
void setJournalSocketForTesting(const std::string& path);

} // namespace qrv
