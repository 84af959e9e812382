#pragma once

// Prepares the process for views and printing.

namespace qrv {

/// Whether NSApplicationLoad has been called. Main thread only.
inline bool applicationIsLoaded = false;

/// Makes windows usable in a process without an event loop. Nothing has to be set up for that here, so it
/// always succeeds.
inline bool NSApplicationLoad() {
    applicationIsLoaded = true;
    return true;
}

} // namespace qrv
