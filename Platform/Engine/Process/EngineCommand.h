#pragma once

// How the engine is called: its arguments and its environment.

#include "Platform/Engine/Process/EngineLocator.h"

#include <string>
#include <vector>

namespace qrv::engine {

/// The arguments, the program's name first. The engine speaks DevTools on descriptors 3 (in) and 4 (out).
std::vector<std::string> engineArguments(const EngineExecutable& executable, bool sandboxed);

/// NAME=value of everything the engine sees. Nothing that leads it to a proxy, a display or a place to write
/// in; the caller's language, time zone and fonts stay.
std::vector<std::string> engineEnvironment();

} // namespace qrv::engine
