#pragma once

// The engine's confinement: namespaces of its own, an identity without rights, no files but those that it
// needs, no sockets, and the engine's own sandbox around its renderers.
//
//     EngineSandbox sandbox(program, environment);
//     pid_t child = sandbox.fork(reporter);
//     if (child == 0) { ... if (!sandbox.enter(reporter)) _exit(127); ... execve(...); }
//
// The engine never runs with root's rights or without the filter that keeps it from sockets. Whatever else
// the kernel refuses is done without, and reported.

#include "Platform/Confinement/FileRules.h"
#include "Platform/Confinement/SystemCallFilter.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace qrv::engine {

/// A step of the launch that failed, as the child reports it to its parent.
struct LaunchStep {
    enum class Kind {
        namespaces,      ///< refused; only the file rules and the filter are left
        identityMap,     ///< refused; the engine's own sandbox will not work
        temporaryFolder, ///< no file system of its own; a folder in the caller's is used
        processFolder,   ///< not its own; the engine sees that other processes exist
        fileRules,       ///< not in this kernel; the engine can open what its user can
        engineSandbox,   ///< cannot work here; the engine runs without it
        identity,        ///< root could not be dropped: fatal, like everything below
        requiredSandbox, ///< the engine's own: it can not work here, and the engine must not run without
        systemCallFilter,
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

class EngineSandbox {
public:
    /// Prepares what a child can not, which must not allocate. Throws std::system_error.
    EngineSandbox(const std::string& program, const std::vector<std::string>& environment);

    /// Forks into as many namespaces as the kernel gives. With namespaces the child is their first process,
    /// whose end ends all others. Returns what fork does; no handlers for forks are called.
    pid_t fork(const LaunchReporter& reporter);

    /// Confines the child; async-signal-safe. Returns false if it must not go on.
    bool enter(const LaunchReporter& reporter);

    /// In the child, after enter: whether it has mounts of its own.
    bool hasMounts() const { return hasMounts_; }

    /// The environment with the temporary folder, for a child with or without mounts of its own. With them
    /// the folder is gone with the child's last process.
    const std::vector<std::string>& environment(bool withMounts) const {
        return (withMounts ? mounted_ : unmounted_).environment;
    }

    /// Removes the temporary folder of a child without mounts, which must have ended.
    void removeFolder() const;

private:
    struct Surroundings {
        Surroundings(const std::string& program, std::vector<std::string> environment_,
                     const std::string& temporaryFolder);

        std::vector<std::string> environment;
        FileRules files;
    };

    bool dropIdentity(const LaunchReporter& reporter) const;
    void mount(const LaunchReporter& reporter);

    unsigned user_;
    unsigned group_;
    std::string folder_; // of a child without mounts
    Surroundings mounted_;
    Surroundings unmounted_;
    SystemCallFilter filter_ = SystemCallFilter::allowingAll();
    unsigned namespaces_ = 0; // CLONE_NEW...
    bool hasMounts_ = false;
};

/// What keeps the engine from building its own sandbox from within the calling process: an errno value, or 0;
/// async-signal-safe.
int engineSandboxError();

} // namespace qrv::engine
