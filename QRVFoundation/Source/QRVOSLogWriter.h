#pragma once

// Log lines to the unified log, one category for each area, with a copy on standard error:
//
//     2026-11-21 12:00:00.123 [org.quillvane.web2pdf] [LogWeb2PDF] text
//
// Lines of more than 255 bytes are cut into pieces of the message, each written with the whole prefix.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSDateFormatter.h"
#include "Platform/Logging/os_log.h"
#include "QRVFoundation/Source/QRVLogWriter.h"

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace qrv {

class QRVOSLogWriter : public QRVLogWriter {
public:
    // - init
    QRVOSLogWriter();

    // + isOSLogAvailable
    /// From Foundation 1057 and system 10.12.0 on.
    static bool isOSLogAvailable();

    // - subsystem
    /// "org.quillvane." and the process name as it is now.
    NSString subsystem() const;
    // - logForArea:
    /// One handle for each area, made when first asked for and kept as long as the writer; the general one
    /// for nil.
    os_log_t logForArea(const NSString& area);
    // - cStringFromString:
    /// The string in UTF-8, up to the first U+0000. A string that has no such form, having unpaired
    /// surrogates, gives "UTF-8 error: " and its escaped form. nullopt for nil.
    virtual std::optional<std::string> cStringFromString(const NSString& string) const;

    // - writePrefix:message:area:
    /// With `checkLength`.
    void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                  const NSString& area) override;
    // - writePrefix:message:area:checkLength:
    /// One line, in pieces if it is to be checked and is too long. Pieces are not checked again: those of a
    /// long prefix may be longer than 255 bytes. An empty message with a prefix that long writes nothing.
    void writePrefix_message_area_checkLength(const NSString& prefix, const NSString& message,
                                              const NSString& area, bool checkLength);
    // - splitMessage:
    /// The pieces of each line in turn; only "\n" ends a line, and empty lines have no pieces.
    NSArray splitMessage(const NSString& message) const;
    // - splitLine:length:
    /// Chunks that end after the first composed character sequence to exceed `length` UTF-16 units; only the
    /// last may be shorter.
    NSArray splitLine_length(const NSString& line, unsigned long length) const;
    // - logCString:area:
    /// Writes a finished line to the unified log, unless within the development environment, and to standard
    /// error.
    void logCString_area(const std::string& line, const NSString& area);

private:
    const os_log_t _log;
    std::mutex logsByAreaMutex_;
    std::unordered_map<std::u16string, os_log_t> _logsByArea;
    const NSDateFormatter _dateFormatter;
};

} // namespace qrv
