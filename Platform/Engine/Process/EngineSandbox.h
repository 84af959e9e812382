#pragma once

// The engine's confinement: a kernel barrier against the network, an identity without rights, and the
// engine's own sandbox around its renderers.
//
// The engine never runs without a barrier against the network: if the kernel refuses namespaces, a system
// call filter replaces the network namespace. If the engine's own sandbox cannot work, the engine runs
// without it, and that is logged.

#include <optional>
#include <string>

namespace qrv::engine {

/// A step of the launch that failed, as the child reports it to its parent.
struct LaunchStep {
    enum class Kind {
        networkNamespace, ///< refused; a user namespace is tried next
        userNamespace,    ///< refused; a system call filter is tried next
        identityMap,      ///< refused; the engine's own sandbox will not work
        engineSandbox,    ///< cannot work here; the engine runs without it
        identity,         ///< root could not be dropped: fatal, like everything below
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

/// Reports a step; async-signal-safe.
class LaunchReporter {
public:
    explicit LaunchReporter(int descriptor) : descriptor_(descriptor) {}

    void report(LaunchStep::Kind kind, int error) const;

private:
    int descriptor_;
};

/// Confines the calling process, between fork and exec; async-signal-safe. Returns false if it must not go
/// on.
bool enterSandbox(const LaunchReporter& reporter);

/// Whether the engine could build its own sandbox from within the calling process; async-signal-safe.
bool canUseEngineSandbox(const LaunchReporter& reporter);

} // namespace qrv::engine
