#pragma once

// One started engine: a child process, shut in, with everything that descends from it.
//
// It does not survive us. The kernel kills the engine when the thread that started it dies, however that
// happens, and the engine's own children end with it; the destructor does the same at once and leaves no
// zombies.

#include "Platform/Engine/Process/EngineSandbox.h"
#include "Platform/Foundation/FileDescriptor.h"

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
        /// Look first whether the engine's own sandbox can work, and leave it out where it can not.
        bool checkEngineSandbox = false;
    };

    /// Starts the command and returns without waiting for it. Throws std::system_error when there are no
    /// processes or descriptors left.
    explicit EngineChild(const Command& command);
    ~EngineChild();
    EngineChild(const EngineChild&) = delete;
    EngineChild& operator=(const EngineChild&) = delete;

    pid_t pid() const { return pid_; }

    /// Our end of the connection; it can be taken once.
    FileDescriptor takeSocket() { return std::move(socket_); }

    /// The steps told of since the last call.
    std::vector<LaunchStep> takeSteps();

    /// Kills and reaps the engine and its descendants; bounded. Done again it does nothing.
    void terminate();

    /// How the engine ended, after terminate: "was ended by signal 9 (Killed)".
    std::string endText() const;

private:
    bool reap();

    pid_t pid_ = -1;
    FileDescriptor socket_;
    FileDescriptor steps_;
    bool reaped_ = false;     // the engine itself
    bool terminated_ = false; // and all that descends from it
    int status_ = 0;
};

} // namespace qrv::engine
