#pragma once

// A process and its descendants, as /proc shows them.

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

namespace qrv::engine {

struct ProcessState {
    pid_t pid = 0;
    pid_t parent = 0;
    bool isAlive = false;   ///< false for a zombie, and for a process that is gone
    std::size_t memory = 0; ///< bytes that only memory can hold: without what can be read from files again
    std::string type;       ///< the value of the argument --type; empty for none
};

/// The process first, parents before their children. Costs some microseconds for each thread of each process.
/// What is hidden from this process, or ends meanwhile, is left out. `folder` stands for /proc. Any thread.
std::vector<ProcessState> readProcessTree(pid_t root, const std::string& folder = "/proc");

} // namespace qrv::engine
