#include "Platform/Confinement/ForkedChild.h"

#include <csignal>
#include <cstring>
#include <sys/wait.h>

namespace qrv {

void resetSignals() {
    struct sigaction standard;
    std::memset(&standard, 0, sizeof standard);
    standard.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal) ::sigaction(signal, &standard, nullptr);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

std::string endText(int status) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "was ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) + ")";
    }
    return "exited with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace qrv
