#pragma once

// A stretch of code in which this thread takes no signals.

#include <csignal>
#include <pthread.h>

namespace qrv {

/// Blocks all signals of this thread for as long as it lives; those that arrive meanwhile are taken at its
/// end.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }

    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_;
};

} // namespace qrv
