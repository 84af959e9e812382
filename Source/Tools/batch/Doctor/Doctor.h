#pragma once

// Tells whether conversions will work on this machine, by one that is watched, and what could be better.

#include <cstddef>
#include <string>

namespace qrv::batch {

struct DoctorOptions {
    bool asJson = false;
    /// The path of the tool; empty if there is none.
    std::string tool;
    /// How many conversions would run at once.
    std::size_t jobs = 1;
};

/// Writes what was found to standard output. The exit status: success when conversions will work here,
/// failure when they will not, and that of an interruption by a signal. Takes some seconds, and leaves
/// nothing behind.
int examineMachine(const DoctorOptions& options);

} // namespace qrv::batch
