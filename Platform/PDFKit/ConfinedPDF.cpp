#include "Platform/PDFKit/ConfinedPDF.h"

#include "Platform/Logging/NSLog.h"
#include "Platform/PDFKit/PDFFile.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <qpdf/QPDF.hh>
#include <sstream>
#include <utility>

namespace qrv {

// Measured on prints of text, which are packed best: 80 bytes of memory and a microsecond for a byte.
ConfinedLimits limitsForPDF(std::size_t length) {
    constexpr std::uint64_t memoryPerByte = 160;
    constexpr std::uint64_t mostMemory = 4ULL << 30;
    constexpr std::chrono::seconds longest(600);
    const std::chrono::seconds mebibytes(static_cast<long long>(length >> 20));
    ConfinedLimits limits;
    limits.memory = std::min(limits.memory + memoryPerByte * length, mostMemory);
    limits.result += 2 * length;
    limits.processorTime = std::min(limits.processorTime + 4 * mebibytes, longest);
    limits.time = std::min(limits.time + 12 * mebibytes, longest);
    return limits;
}

namespace {

/// The file that was made or looked at last.
class LastFile {
public:
    void remember(const NSData& bytes, const std::optional<PDFEnding>& ending) {
        const std::lock_guard lock(mutex_);
        bytes_ = bytes;
        ending_ = ending;
    }

    /// Nothing for other bytes; a file that cannot be opened has no ending.
    std::optional<std::optional<PDFEnding>> endingOf(const NSData& bytes) {
        const std::lock_guard lock(mutex_);
        if (!bytes_ || bytes.bytes() != bytes_.bytes()) return std::nullopt;
        return std::make_optional(ending_);
    }

private:
    std::mutex mutex_;
    NSData bytes_;
    std::optional<PDFEnding> ending_;
};

/// Never destroyed, since another thread may end the process.
LastFile& lastFile() {
    static auto* file = new LastFile;
    return *file;
}

/// Two parts as one, and back; empty parts of what is too short.
NSData joined(const NSData& first, const NSData& second) {
    const std::uint64_t length = first.length();
    std::string bytes(reinterpret_cast<const char*>(&length), sizeof length);
    bytes += first.bytes();
    bytes += second.bytes();
    return NSData(std::move(bytes));
}

std::pair<NSData, NSData> parted(const NSData& parts) {
    std::uint64_t length = 0;
    if (parts.length() < sizeof length) return {};
    std::memcpy(&length, parts.bytes().data(), sizeof length);
    const std::size_t rest = parts.length() - sizeof length;
    if (length > rest) return {};
    return {parts.subdataWithRange({sizeof length, length}),
            parts.subdataWithRange({sizeof length + length, rest - length})};
}

} // namespace

std::optional<NSData> workOnPDF(const char* purpose, std::size_t length, const ConfinedWork& work) {
    const ConfinedResult result = runConfined(work, limitsForPDF(length));
    std::istringstream notes(result.notes);
    for (std::string line; std::getline(notes, line);) NSLog(u"%s", line.c_str());
    if (result.failure.empty()) return result.data;
    NSLog(u"%s %s", purpose, result.failure.c_str());
    return std::nullopt;
}

std::optional<NSData> workOnDocument(const char* purpose, const NSData& bytes,
                                     const std::function<NSData(QPDF&)>& work) {
    return workOnPDF(purpose, bytes.length(), [&](std::string&) {
        const auto document = openPDF(bytes);
        return document ? work(*document) : NSData();
    });
}

NSData makeFromPDF(const char* purpose, std::size_t length, const PDFMaking& making) {
    const auto made = workOnPDF(purpose, length, [&](std::string& notes) {
        PDFEnding ending;
        const NSData bytes = making(notes, ending);
        return bytes ? joined(listFromEnding(ending), bytes) : NSData();
    });
    if (!made || !*made) return {};
    const auto [list, bytes] = parted(*made);
    lastFile().remember(bytes, endingFromList(list));
    return bytes;
}

bool mayBeReadablePDF(const NSData& bytes) {
    const auto answer = workOnPDF("looking at a stored PDF", bytes.length(), [&](std::string&) {
        if (const auto document = openPDF(bytes)) {
            return document->getAllPages().empty() ? NSData() : listFromEnding(endingOf(*document, bytes));
        }
        return isReadablePDF(bytes) ? NSData::data() : NSData();
    });
    if (answer && *answer) lastFile().remember(bytes, endingFromList(*answer));
    return !answer || *answer;
}

std::optional<PDFEnding> endingOfPDF(const NSData& bytes) {
    if (const auto known = lastFile().endingOf(bytes)) return *known;
    const auto list = workOnDocument(
        "reading a PDF", bytes, [&](QPDF& document) { return listFromEnding(endingOf(document, bytes)); });
    return list ? endingFromList(*list) : std::nullopt;
}

} // namespace qrv
