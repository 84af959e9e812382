#include "Source/Tools/batch/Jobs.h"

#include "Platform/Engine/Process/Machine.h"

#include <algorithm>
#include <cmath>

namespace qrv::batch {

namespace {

/// Of a usual page, measured: see Documentation/scaling.md.
constexpr double processorSeconds = 0.25;
constexpr std::size_t memoryOfAConversion = std::size_t{200} << 20;

} // namespace

Resources Resources::ofThisMachine() {
    return {engine::availableProcessors(), engine::availableMemory()};
}

std::size_t usualJobs(const Resources& resources, double quietPeriod) {
    const double busy = resources.processors * (1 + quietPeriod / processorSeconds);
    const std::size_t fitting = resources.memory / memoryOfAConversion;
    return static_cast<std::size_t>(std::max(1.0, std::ceil(std::min(busy, static_cast<double>(fitting)))));
}

std::size_t memoryLimitForEach(std::size_t machineMemory, std::size_t jobs) {
    constexpr std::size_t enoughForMostPages = std::size_t{1} << 30;
    // Not all are greedy at the same time.
    return std::min(std::max(2 * machineMemory / jobs, enoughForMostPages), machineMemory / 2);
}

} // namespace qrv::batch
