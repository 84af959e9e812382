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
#include "Platform/Engine/Process/Sandbox/LaunchStep.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace qrv::engine {

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

    /// Likewise: whether the kernel has refused nothing.
    bool hasAll() const { return hasAll_; }

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

    bool dropIdentity(const LaunchReporter& reporter);
    void mount(const LaunchReporter& reporter);
    void lacks(LaunchStep::Kind kind, const LaunchReporter& reporter);

    unsigned user_;
    unsigned group_;
    std::string folder_; // of a child without mounts
    Surroundings mounted_;
    Surroundings unmounted_;
    SystemCallFilter filter_ = SystemCallFilter::allowingAll();
    unsigned namespaces_ = 0; // CLONE_NEW...
    bool hasMounts_ = false;
    bool hasAll_ = true;
};

} // namespace qrv::engine
