#pragma once

// The engine's command line and environment.

#include "Platform/Engine/Process/EngineLocator.h"

#include <string>
#include <vector>

namespace qrv::engine {

/// The arguments, beginning with the program's path. The engine speaks DevTools on descriptors 3 (in) and 4
/// (out).
std::vector<std::string> engineArguments(const EngineExecutable& executable, bool sandboxed);

/// Where the engine gets a temporary folder of its own.
inline constexpr const char* ownTemporaryFolder = "/dev/shm";

/// The engine's environment, as NAME=value. It names no proxy, no display and no writable folder but the
/// temporary one: its own or the caller's. The caller's language, time zone and fonts are kept.
std::vector<std::string> engineEnvironment(bool hasOwnTemporaryFolder);

} // namespace qrv::engine
