#pragma once

// How many conversions run at once.

#include <cstddef>

namespace qrv::batch {

/// What a machine has for them.
struct Resources {
    double processors;
    std::size_t memory; ///< bytes that are available

    static Resources ofThisMachine();
};

/// As many as keep the processors busy and fit the memory, at least one. Most of a conversion's time is the
/// quiet period, in seconds, for which a page is waited for.
std::size_t usualJobs(const Resources& resources, double quietPeriod);

/// Bytes that the engine of each of so many conversions may hold, so that a few greedy pages at once do not
/// take the whole machine.
std::size_t memoryLimitForEach(std::size_t machineMemory, std::size_t jobs);

} // namespace qrv::batch
