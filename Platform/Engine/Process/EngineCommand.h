#pragma once

// The engine's command line and environment.

#include <string>
#include <vector>

namespace qrv::engine {

/// The arguments, beginning with the program's path. The engine speaks DevTools on descriptors 3 (in) and 4
/// (out).
std::vector<std::string> engineArguments(const std::string& program, bool sandboxed);

/// The engine's environment, as NAME=value, without the folders that it may write to, which are its sandbox's
/// choice. It names no proxy, no display and no writable folder; the caller's language, time zone and fonts
/// are kept.
std::vector<std::string> engineEnvironment();

} // namespace qrv::engine
