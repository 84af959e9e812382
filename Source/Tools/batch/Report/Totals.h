#pragma once

// What the records of many archives come to.

#include "Source/Tools/batch/Results/Record.h"

namespace qrv::batch {

/// What is said of an archive in one word.
enum class Verdict {
    complete,   ///< converted, and nothing is missing
    incomplete, ///< converted without some resources
    failed,
};

Verdict verdictOf(const Record& record);

/// Sums stay at the largest number where results are damaged, and negative numbers count as 0.
struct Totals {
    std::int64_t archives = 0;
    std::int64_t complete = 0;
    std::int64_t incomplete = 0;
    std::int64_t failed = 0;
    std::int64_t missing = 0;
    /// Of the PDFs whose pages were counted.
    std::int64_t pages = 0;
    std::int64_t size = 0;
    std::int64_t milliseconds = 0;
    /// When the last one was done; empty if there is none.
    std::string finished;

    void add(const Record& record);
};

} // namespace qrv::batch
