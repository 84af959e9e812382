#pragma once

// What every child process begins with and ends in.

#include <csignal>
#include <string>

namespace qrv {

/// Blocks all signals of this thread for as long as it exists, so that no handler of this process runs in a
/// child that is forked meanwhile.
class SignalsBlocked {
public:
    SignalsBlocked();
    ~SignalsBlocked();
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_;
};

/// Gives each signal its default action again and blocks none. Async-signal-safe.
void resetSignals();

/// How a process with this status of waitpid(2) ended, such as "was ended by signal 9 (Killed)".
std::string endText(int status);

} // namespace qrv
