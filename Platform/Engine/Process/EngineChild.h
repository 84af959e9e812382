#pragma once

// A started engine: a confined child process with all its descendants.
//
// It does not outlive this process. The kernel kills the engine when the thread that started it ends, however
// that happens, and with it all processes of its namespace; where it has none, its own children end with
// their connection to it. The destructor does the same at once and leaves no zombies.

#include "Platform/Engine/Process/Sandbox/EngineSandbox.h"
#include "Platform/Foundation/FileDescriptor.h"

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

namespace qrv::engine {

class EngineChild {
public:
    struct Command {
        std::vector<std::string> arguments; ///< the program's path first
        std::vector<std::string> argumentsWithoutSandbox;
        std::vector<std::string> environment;
        /// Check first whether the engine's own sandbox can work, and disable it if not, unless it is
        /// required. That is done in any case where the kernel has refused something.
        bool checkEngineSandbox = false;
        bool requireEngineSandbox = false;
        std::size_t memoryLimit = 0; ///< see limitOwnMemory
    };

    /// Starts the command without waiting for it. Throws std::system_error if the system has no processes or
    /// descriptors left.
    explicit EngineChild(const Command& command);
    ~EngineChild();
    EngineChild(const EngineChild&) = delete;
    EngineChild& operator=(const EngineChild&) = delete;

    pid_t pid() const { return pid_; }

    /// Returns our end of the connection; may be called once.
    FileDescriptor takeSocket() { return std::move(socket_); }

    /// Returns the steps reported since the last call.
    std::vector<LaunchStep> takeSteps();

    /// Kills and reaps the engine and its descendants, in bounded time, and removes what they left. Calling
    /// it again does nothing.
    void terminate();

    /// How the engine ended, after terminate, such as "was ended by signal 9 (Killed)".
    std::string endText() const;

private:
    bool reap();

    EngineSandbox sandbox_;
    pid_t pid_ = -1;
    FileDescriptor socket_;
    FileDescriptor steps_;
    bool reaped_ = false;     // the engine itself
    bool terminated_ = false; // and all its descendants
    int status_ = 0;
};

} // namespace qrv::engine
