#pragma once

// Writes log lines to the unified log, with one category per area, and a copy to standard error:
//
//     2026-11-21 12:00:00.123 [org.quillvane.web2pdf] [LogWeb2PDF] text
//
// Lines of more than 255 bytes are split: each piece of the message is written with the whole prefix.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSDateFormatter.h"
#include "Platform/Logging/os_log.h"
#include "QRVFoundation/Source/QRVLogWriter.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace qrv {

class QRV_EXPORT QRVOSLogWriter : public QRVLogWriter {
public:
    // - init
    QRVOSLogWriter();

    // + isOSLogAvailable
    /// True from Foundation 1057 and system 10.12.0 on.
    static bool isOSLogAvailable();

    // - subsystem
    /// "org.quillvane." and the current process name.
    NSString subsystem() const;
    // - logForArea:
    /// Returns the area's handle, which is created on first use and kept as long as the writer; the general
    /// one for nil.
    os_log_t logForArea(const NSString& area);
    // - cStringFromString:
    /// Returns the string in UTF-8, up to the first U+0000. A string with unpaired surrogates gives "UTF-8
    /// error: " and its escaped form. nullopt for nil.
    virtual std::optional<std::string> cStringFromString(const NSString& string) const;

    // - writePrefix:message:area:
    /// Writes a line, with `checkLength`.
    void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                  const NSString& area) override;
    // - writePrefix:message:area:checkLength:
    /// Writes one line, split if its length is to be checked and is too long. Pieces are not checked again:
    /// with a long prefix they may be longer than 255 bytes. An empty message with a prefix that long writes
    /// nothing.
    void writePrefix_message_area_checkLength(const NSString& prefix, const NSString& message,
                                              const NSString& area, bool checkLength);
    // - splitMessage:
    /// Returns the pieces of each line in turn. Only "\n" ends a line; empty lines have no pieces.
    NSArray splitMessage(const NSString& message) const;
    // - splitLine:length:
    /// Splits into chunks that end after the first composed character sequence to exceed `length` UTF-16
    /// units; only the last one may be shorter.
    NSArray splitLine_length(const NSString& line, unsigned long length) const;
    // - logCString:area:
    /// Writes a complete line to the unified log, except in the development environment, and to standard
    /// error.
    void logCString_area(const std::string& line, const NSString& area);

private:
    std::string utf8Subsystem();

    const os_log_t _log;
    std::mutex mutex_; // guards what changes: the handles by area, and the subsystem's name
    std::map<std::u16string, os_log_t, std::less<>> _logsByArea;
    NSDateFormatter _dateFormatter;
    NSString nameOfSubsystem_; // the process's name that utf8Subsystem_ was made from
    std::string utf8Subsystem_;
};

} // namespace qrv
