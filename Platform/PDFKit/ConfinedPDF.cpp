#include "Platform/PDFKit/ConfinedPDF.h"

#include "Platform/Logging/NSLog.h"
#include "Platform/PDFKit/PDFFile.h"

#include <algorithm>
#include <sstream>

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

std::optional<NSData> workOnPDF(const char* purpose, const NSData& pdf, const ConfinedWork& work) {
    const ConfinedResult result = runConfined(work, limitsForPDF(pdf.length()));
    std::istringstream notes(result.notes);
    for (std::string line; std::getline(notes, line);) NSLog(u"%s", line.c_str());
    if (result.failure.empty()) return result.data;
    NSLog(u"%s %s", purpose, result.failure.c_str());
    return std::nullopt;
}

bool mayBeReadablePDF(const NSData& bytes) {
    const auto answer = workOnPDF("looking at a stored PDF", bytes, [&](std::string&) {
        return isReadablePDF(bytes) ? NSData::data() : NSData();
    });
    return !answer || *answer;
}

} // namespace qrv
