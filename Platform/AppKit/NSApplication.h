#pragma once

// The process as an application.

namespace qrv {

/// Makes the windows, views and printing of this folder usable in a process without an event loop. Here they
/// need no connection to a display and no other setting up, so there is nothing that could fail: always true.
inline bool NSApplicationLoad() {
    return true;
}

} // namespace qrv
