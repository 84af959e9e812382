#pragma once

// What the engine's launch could not have, as the child tells its parent, and as the log tells the reader.

#include <string>

namespace qrv::engine {

struct LaunchStep {
    enum class Kind {
        namespaces,        ///< refused; only the file rules and the filter are left
        identityMap,       ///< refused; the engine's own sandbox will not work
        temporaryFolder,   ///< no file system of its own; a folder in the caller's is used
        processFolder,     ///< not its own; the engine sees that other processes exist
        fileRules,         ///< not in this kernel; the engine can open what its user can
        sandboxNamespaces, ///< refused to the engine's own sandbox
        sandboxRoot,       ///< a root folder of its own, likewise
        engineSandbox,     ///< cannot work here; the engine runs without it
        identity,          ///< root could not be dropped: fatal, like everything below
        requiredSandbox,   ///< the engine's own: it can not work here, and the engine must not run without
        systemCallFilter,
        descriptors,
        execution,
    };

    Kind kind;
    int error; ///< errno

    bool isFatal() const { return kind >= Kind::identity; }

    /// A line for the log: what is missing, what that means, the system's text, and what can be done about
    /// it.
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

} // namespace qrv::engine
