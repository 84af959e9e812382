#include "Source/Tools/batch/Interruption.h"

#include <csignal>

namespace qrv::batch {

namespace {

sigset_t signals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};

        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) sigaddset(&set, number);
    }
    return set;
}

} // namespace

Interruption::Interruption() {
    const sigset_t set = signals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

bool Interruption::waitFor(std::chrono::milliseconds time) {
    const sigset_t set = signals();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    const timespec timeout{seconds.count(), std::chrono::nanoseconds(time - seconds).count()};
    if (sigtimedwait(&set, nullptr, &timeout) > 0) hasCome_ = true;
    return hasCome_;
}

} // namespace qrv::batch
