#include "Source/Tools/web2pdf.h"

#include "Platform/Foundation/MappedFile.h"
#include "Platform/Foundation/NSProcessInfo.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Opens closed standard streams, so that no file gets their descriptor.
void openStandardStreams() {
    int descriptor = STDIN_FILENO;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::open("/dev/null", O_RDWR);
    if (descriptor > STDERR_FILENO) ::close(descriptor);
}

} // namespace

int main(int argc, char** argv) {
    openStandardStreams();
    // The run must reach its end even if nobody reads its output any more, or it outgrows the limit for
    // files: such writes fail.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // A caller that ignores how its children end hands that on, and then nobody learns how ours end.
    std::signal(SIGCHLD, SIG_DFL);
    qrv::allowMappedFiles();
    qrv::NSProcessInfo::processInfo().setArguments(argc, argv);
    qrv::runWeb2PDF();
}
