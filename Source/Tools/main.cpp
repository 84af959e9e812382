#include "Source/Tools/web2pdf.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// A standard stream that came closed must not become the first file that is opened.
void openStandardStreams() {
    int descriptor = STDIN_FILENO;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::open("/dev/null", O_RDWR);
    if (descriptor > STDERR_FILENO) ::close(descriptor);
}

} // namespace

int main() {
    openStandardStreams();
    // A reader that has gone must not keep the run from its end.
    std::signal(SIGPIPE, SIG_IGN);
    qrv::runWeb2PDF();
}
