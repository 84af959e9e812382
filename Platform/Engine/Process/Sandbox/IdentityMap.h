#pragma once

// Who a process is in a user namespace that it has just entered, where nobody is known yet.

namespace qrv::engine {

/// Makes the calling process the user and group again that it is outside, and root 65534, which has no
/// rights. Returns false and sets errno if the kernel refuses. Async-signal-safe.
bool mapIdentity(unsigned user, unsigned group);

} // namespace qrv::engine
