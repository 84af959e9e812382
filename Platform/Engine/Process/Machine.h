#pragma once

// What of the machine this process may use: memory and processors, as far as its control groups, of either
// version, leave them to it. `root` stands for the root of the file system.

#include <cstddef>
#include <string>

namespace qrv::engine {

/// Bytes of memory in all.
std::size_t machineMemory(const std::string& root = "");

/// Bytes of memory that are free, or would be without the files that are kept in it.
std::size_t availableMemory(const std::string& root = "");

/// How many processors' time there is; at least a small part of one.
double availableProcessors(const std::string& root = "");

} // namespace qrv::engine
