#include "QRVFoundation/Source/QRVOSLogWriter.h"

#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/Unicode.h"
#include "Platform/Logging/StandardError.h"

#include <algorithm>
#include <cmath>

namespace qrv {

namespace {

/// Longer lines are split.
constexpr std::size_t entryByteLimit = 255;
/// The length in UTF-16 units after which a piece of a long line ends.
constexpr unsigned long chunkLength = 128;

std::optional<std::string> utf8Form(const NSString& string) {
    if (!string) return std::nullopt;
    std::optional<std::string> text = unicode::toUTF8(string.view());
    // Cut at the first zero, like a C string.
    if (text) text->resize(std::min(text->size(), text->find('\0')));
    return text;
}

} // namespace

QRVOSLogWriter::QRVOSLogWriter() : _log(os_log_create(subsystem().utf8(), "QRVLogger")) {
    _dateFormatter.setDateFormat(u"yyyy-MM-dd HH:mm:ss.SSS");
}

bool QRVOSLogWriter::isOSLogAvailable() {
    return std::floor(NSFoundationVersionNumber()) > 1056.0 &&
           NSProcessInfo::processInfo().isOperatingSystemAtLeastVersion({10, 12, 0});
}

NSString QRVOSLogWriter::subsystem() const {
    return NSString(u"org.quillvane.").stringByAppendingString(NSProcessInfo::processInfo().processName());
}

os_log_t QRVOSLogWriter::logForArea(const NSString& area) {
    if (!area) return _log;
    const std::lock_guard lock(logsByAreaMutex_);
    const auto known = _logsByArea.find(area.view());
    if (known != _logsByArea.end()) return known->second;
    os_log_t log =
        os_log_create(subsystem().utf8(), NSString::stringWithFormat(u"QRVLogger.%@", area).utf8());
    _logsByArea.emplace(area.view(), log);
    return log;
}

std::optional<std::string> QRVOSLogWriter::cStringFromString(const NSString& string) const {
    if (!string) return std::nullopt;
    if (std::optional<std::string> text = utf8Form(string)) return text;
    const std::optional<std::string> escaped = unicode::encode(string.view(), NSNonLossyASCIIStringEncoding);
    if (!escaped) return std::nullopt;
    const NSString ascii = NSString::fromUTF8(*escaped);
    return utf8Form(NSString::stringWithFormat(u"UTF-8 error: %@", ascii));
}

void QRVOSLogWriter::writePrefix_message_area(const NSString& prefix, const NSString& message,
                                              const NSString& area) {
    writePrefix_message_area_checkLength(prefix, message, area, true);
}

void QRVOSLogWriter::writePrefix_message_area_checkLength(const NSString& prefix, const NSString& message,
                                                          const NSString& area, bool checkLength) {
    const std::optional<std::string> line = cStringFromString(combinePrefix_andMessage(prefix, message));
    if (!line) {
        logCString_area("Fallback UTF-8 conversion failed.", area);
    } else if (checkLength && line->size() > entryByteLimit) {
        for (const id& piece : splitMessage(message)) {
            writePrefix_message_area_checkLength(prefix, as<NSString>(piece), area, false);
        }
    } else {
        logCString_area(*line, area);
    }
}

NSArray QRVOSLogWriter::splitMessage(const NSString& message) const {
    std::vector<id> pieces;
    for (const id& line : message.componentsSeparatedByString(u"\n")) {
        const NSArray chunks = splitLine_length(as<NSString>(line), chunkLength);
        pieces.insert(pieces.end(), chunks.begin(), chunks.end());
    }
    return NSArray(std::move(pieces));
}

NSArray QRVOSLogWriter::splitLine_length(const NSString& line, unsigned long length) const {
    std::vector<id> chunks;
    const std::u16string_view text = line.view();
    std::size_t chunkStart = 0;
    unicode::ComposedSequences sequences(text);
    while (const auto sequence = sequences.next()) {
        // Checked before the sequence joins the chunk, so that a finished chunk is longer than the length.
        if (sequence->start - chunkStart > length) {
            chunks.emplace_back(NSString(text.substr(chunkStart, sequence->start - chunkStart)));
            chunkStart = sequence->start;
        }
    }
    if (chunkStart < text.size()) chunks.emplace_back(NSString(text.substr(chunkStart)));
    return NSArray(std::move(chunks));
}

void QRVOSLogWriter::logCString_area(const std::string& line, const NSString& area) {
    const os_log_t log = logForArea(area);
    if (!_isInXcode) os_log_with_type(log, OS_LOG_TYPE_ERROR, line);
    const NSString date = _dateFormatter.stringFromDate(NSDate::date());
    std::string copy = utf8Form(date).value_or("unknown date");
    copy.reserve(copy.size() + line.size() + 128);
    copy.append(" [")
        .append(utf8Form(subsystem()).value_or("QRVLogger"))
        .append("] ")
        .append(line)
        .append("\n");
    writeStandardErrorLine(copy);
}

} // namespace qrv
