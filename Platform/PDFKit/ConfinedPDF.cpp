#include "Platform/PDFKit/ConfinedPDF.h"

#include "Platform/Logging/NSLog.h"
#include "Platform/PDFKit/PDFFile.h"

#include <algorithm>
#include <sstream>

namespace qrv {

ConfinedLimits limitsForPDF(std::size_t length) {
    constexpr std::uint64_t memoryPerByte = 64;
    constexpr std::chrono::seconds longest(600);
    const std::chrono::seconds seconds(static_cast<long long>(length >> 20));
    ConfinedLimits limits;
    limits.memory += memoryPerByte * length;
    limits.result += 2 * length;
    limits.processorTime = std::min(limits.processorTime + 2 * seconds, longest);
    limits.time = std::min(limits.time + 6 * seconds, longest);
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
