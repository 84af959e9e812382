#pragma once

// How far a batch is, and how people are told so.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace qrv::batch {

/// What became of an archive in this run.
enum class Outcome {
    converted,
    convertedBefore, ///< nothing was to be done
    failed,
    failedBefore, ///< and was not tried again
};

struct Tally {
    std::size_t total = 0;
    std::size_t converted = 0;
    std::size_t convertedBefore = 0;
    std::size_t failed = 0;
    std::size_t failedBefore = 0;

    void add(Outcome outcome);

    std::size_t done() const { return converted + convertedBefore + failed + failedBefore; }

    std::size_t allFailed() const { return failed + failedBefore; }

    /// Conversions of this run in a second, failed ones too; 0 before the first.
    double rate(std::chrono::duration<double> elapsed) const;
};

/// "12 s", "3 min 20 s", "1 h 05 min", "3 d 04 h".
std::string timeText(std::chrono::duration<double> time);

/// "812 B", "45 kB", "1.5 MB".
std::string sizeText(std::int64_t bytes);

/// "2.4"
std::string oneDecimal(double number);

/// "500 archives: 480 converted, 10 converted before, 10 failed; 3 min 20 s, 2.4 a second".
std::string summaryText(const Tally& tally, std::chrono::duration<double> elapsed);

} // namespace qrv::batch
