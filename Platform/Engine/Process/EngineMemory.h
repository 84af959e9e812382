#pragma once

// How much memory the engine may hold: all of its processes together, and each of them.

#include <cstddef>
#include <functional>
#include <string>

namespace qrv::engine {

/// The limit in bytes: WEB2PDF_MEMORY_LIMIT in MiB, or half of what the machine or the control groups of this
/// process have. A value that is no positive number gives a line of the log and does not count. `root` stands
/// for the root of the file system.
std::size_t engineMemoryLimit(const std::function<void(const std::string& line)>& log,
                              const std::string& root = "");

/// Keeps the calling process and its descendants, each by itself, from taking far more than the limit before
/// anybody looks: it may reserve one GiB more, since a process reserves much that it never uses. Called
/// between fork and exec; async-signal-safe.
void limitOwnMemory(std::size_t limit);

} // namespace qrv::engine
