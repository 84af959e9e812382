#pragma once

// Waiting for what another process does.

#include <chrono>
#include <thread>

namespace qrv::engine {

/// Looks until `isSo()`, at most `mostLooks` times and with a rest after each, and says whether it came to be
/// so. What is waited for needs the machine as much as the waiter does. So the looks are counted, not timed:
/// a machine that stands still for a while, or hardly gets on, uses none of them up.
template <class Condition>
bool lookUntil(const Condition& isSo, int mostLooks, std::chrono::microseconds rest) {
    for (int looks = 0; looks < mostLooks; ++looks) {
        if (isSo()) return true;
        std::this_thread::sleep_for(rest);
    }
    return false;
}

} // namespace qrv::engine
