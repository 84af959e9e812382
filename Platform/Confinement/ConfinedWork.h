#pragma once

// Work on bytes that nobody vouches for, in a child process that can compute and hand back its result, and
// nothing else.
//
//     const ConfinedResult result =
//         runConfined([&](std::string&) { return reworked(hostile); }, ConfinedLimits());
//     if (!result.failure.empty()) NSLog(u"the rework %s", result.failure.c_str());
//
// The child is a copy of this process as it was at the call: the work sees all that it captures, and what it
// changes nobody sees. It may allocate and throw. It cannot open or make anything, start or signal a process
// or reach a network, and has no standard streams; so it must not log, nor wait for another thread. In
// programs that are built with a sanitizer, which needs memory without measure and writes reports, neither
// memory nor system calls are limited.

#include "Platform/Foundation/NSData.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace qrv {

/// What the work may use; it is ended when it needs more.
struct ConfinedLimits {
    /// Bytes besides those that this process has in use already. Not limited in programs that are built with
    /// a sanitizer, whose own use of memory has no measure.
    std::uint64_t memory = 512ULL << 20;
    /// Bytes of the result.
    std::uint64_t result = 256ULL << 20;
    std::chrono::seconds processorTime{10};
    /// From the call to the end.
    std::chrono::seconds time{60};
};

struct ConfinedResult {
    /// What the work returned, which may be nil; nil after a failure.
    NSData data;
    /// What the work wrote into its argument, in a copy of at most 64 KiB. As trustworthy as the work.
    std::string notes;
    /// Empty when the work returned; otherwise what befell it, such as "was ended by signal 11 (Segmentation
    /// fault)", "threw: no such page", "needed more than 512 MiB of memory".
    std::string failure;
};

using ConfinedWork = std::function<NSData(std::string& notes)>;

/// Runs the work in a child process, and waits for its end. Never throws: what goes wrong here, such as a
/// fork that the system refuses, is a failure of the work. The child does not outlive the call nor this
/// process. Any thread.
ConfinedResult runConfined(const ConfinedWork& work, const ConfinedLimits& limits);

} // namespace qrv
