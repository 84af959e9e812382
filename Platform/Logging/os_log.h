#pragma once

// The unified log, kept by the systemd journal: each entry carries its subsystem and category, so that
// `journalctl SUBSYSTEM=org.quillvane.web2pdf` shows them.
//
//     const os_log_t log = os_log_create("org.quillvane.web2pdf", "QRVLogger");
//     os_log_with_type(log, OS_LOG_TYPE_ERROR, "text");
//
// Without a journal, or with one that does not keep up, entries are lost in silence: logging never waits and
// never fails. Any thread.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qrv {

/// Where entries of one handle belong.
struct OSLogCategory {
    std::string subsystem;
    std::string category;
};

/// A handle, released with its last copy.
using os_log_t = std::shared_ptr<const OSLogCategory>;

enum os_log_type_t : std::uint8_t { OS_LOG_TYPE_ERROR = 0x10 };

os_log_t os_log_create(std::string_view subsystem, std::string_view category);

/// One entry with the text in UTF-8 as it is (the format "%{public}s"): fields MESSAGE, PRIORITY (3),
/// SYSLOG_IDENTIFIER (the process name), SUBSYSTEM and CATEGORY; the journal adds time, user and process by
/// itself. A null handle logs nothing.
void os_log_with_type(const os_log_t& log, os_log_type_t type, std::string_view text);

/// Another socket than the journal's for the following entries.
void setJournalSocketForTesting(const std::string& path);

} // namespace qrv
