#pragma once

// The signals by which people and schedulers end a run: SIGINT, SIGTERM and SIGHUP.

#include <chrono>

namespace qrv::batch {

/// From now on they are not delivered to this thread and those that it starts, but waited for. One that was
/// ignored before stays ignored, as nohup wants it.
class Interruption {
public:
    Interruption();

    /// Waits for one of them, at most so long. True, also from then on, if one has come.
    bool waitFor(std::chrono::milliseconds time);

    bool hasCome() const { return hasCome_; }

private:
    bool hasCome_ = false;
};

} // namespace qrv::batch
