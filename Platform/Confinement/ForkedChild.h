#pragma once

// What every child process begins with and ends in.

#include <string>

namespace qrv {

/// Gives each signal its default action again and blocks none. Async-signal-safe.
void resetSignals();

/// How a process with this status of waitpid(2) ended, such as "was ended by signal 9 (Killed)".
std::string endText(int status);

} // namespace qrv
