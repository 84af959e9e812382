#pragma once

// What a program makes sure of before it opens anything.

#include <fcntl.h>
#include <unistd.h>

namespace qrv {

/// Opens closed standard streams, so that no file gets their descriptor.
inline void openStandardStreams() {
    int descriptor = STDIN_FILENO;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::open("/dev/null", O_RDWR);
    if (descriptor > STDERR_FILENO) ::close(descriptor);
}

} // namespace qrv
