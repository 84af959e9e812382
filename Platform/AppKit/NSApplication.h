#pragma once

// Prepares the process for views and printing.

namespace qrv {

/// Makes windows, views and printing usable in a process without an event loop. Nothing has to be set up
/// here, so it always succeeds.
inline bool NSApplicationLoad() {
    return true;
}

} // namespace qrv
