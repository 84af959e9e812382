#pragma once

// What the engine is shut in with: a kernel barrier against the network, an identity without rights, and the
// engine's own sandbox around its renderers.
//
// The engine never runs without a barrier against the network. Where the kernel grants no namespaces, a
// system call filter takes the network namespace's place; where the engine's own sandbox can not work, the
// engine runs without it, and says so.

#include <optional>
#include <string>

namespace qrv::engine {

/// One thing that could not be had while an engine was started, sent from the child to its parent.
struct LaunchStep {
    enum class Kind {
        networkNamespace, ///< refused; a user namespace is tried next
        userNamespace,    ///< refused; a system call filter is tried next
        identityMap,      ///< refused; the engine's own sandbox will not work
        engineSandbox,    ///< can not work here; the engine runs without it
        identity,         ///< root could not be given up: fatal, as is everything below
        networkBarrier,
        descriptors,
        execution,
    };

    Kind kind;
    int error; ///< errno

    bool isFatal() const { return kind >= Kind::identity; }

    /// A sentence for the log.
    std::string text() const;
};

/// Tells of one step; async-signal-safe.
class LaunchReporter {
public:
    explicit LaunchReporter(int descriptor) : descriptor_(descriptor) {}

    void report(LaunchStep::Kind kind, int error) const;

private:
    int descriptor_;
};

/// Shuts the calling process in, between fork and exec; async-signal-safe. False when it must not go on.
bool enterSandbox(const LaunchReporter& reporter);

/// Whether the engine could build its own sandbox from within the calling process; async-signal-safe.
bool canUseEngineSandbox(const LaunchReporter& reporter);

} // namespace qrv::engine
