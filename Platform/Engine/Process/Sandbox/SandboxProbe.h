#pragma once

// Whether the engine can build its own sandbox here. It gives its page processes namespaces of their own,
// without any right outside of them, and takes every file from them by a root folder that is empty. An engine
// to which one of these is refused does not say so: it dies.

#include "Platform/Engine/Process/Sandbox/LaunchStep.h"

namespace qrv::engine {

/// Does what the engine's sandbox is going to do, in a process of its own. Returns what fails, an errno
/// value, and reports what is missing; or 0. The calling process must have one thread. Async-signal-safe.
int engineSandboxError(const LaunchReporter& reporter);

} // namespace qrv::engine
