#pragma once

// The time of the system's last tick, which costs next to nothing to ask for.

#include <cstdint>
#include <ctime>

namespace qrv {

/// Milliseconds of a clock that never goes back; changes every few of them.
inline std::int64_t coarseMilliseconds() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

} // namespace qrv
