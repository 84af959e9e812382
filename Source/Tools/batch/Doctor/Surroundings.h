#pragma once

// What conversions need of the machine besides an engine: a journal, other programs, memory, processors and
// room for temporary files.

#include "Source/Tools/batch/Doctor/Finding.h"

#include <cstddef>
#include <string>

namespace qrv::batch {

/// For so many conversions at once. `sharedMemory` stands for /dev/shm.
Findings examineSurroundings(std::size_t jobs, const std::string& sharedMemory = "/dev/shm");

} // namespace qrv::batch
