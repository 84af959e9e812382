#pragma once

// Another program, run as a child process with limits: the tool, and the readers of PDF files. The only
// access to the library that starts processes.

#include "Platform/Confinement/FileRules.h"
#include "Platform/Confinement/SystemCallFilter.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace qrv::batch {

struct ChildCommand {
    /// The path of an executable file.
    std::string program;
    std::vector<std::string> arguments;
    /// Variables that are set besides those of this process, or in their place; nothing: one that is not set.
    std::vector<std::pair<std::string, std::optional<std::string>>> variables;
    /// After this time the child is killed.
    std::optional<std::chrono::milliseconds> timeLimit;
    /// Bytes that each of its processes may reserve.
    std::optional<std::size_t> memoryLimit;
    /// The files that it may use and the system calls that it may make; null for no rules. Without Landlock
    /// in the kernel there are none for files.
    const FileRules* files = nullptr;
    const SystemCallFilter* calls = nullptr;
    /// Of each stream so much is kept; the rest is read and dropped.
    std::size_t mostOutput = 1 << 20;
};

struct ChildEnd {
    enum class Kind {
        ended,      ///< by itself or by a signal: `status` is that of waitpid(2)
        timedOut,   ///< killed since its time was over
        stopped,    ///< killed since that was asked for
        notStarted, ///< `status` is the errno value
    };

    Kind kind;
    int status;
    std::string output;
    std::string errors;

    bool succeeded() const { return kind == Kind::ended && status == 0; }

    /// What happened, for people: "was ended by signal 9 (Killed)".
    std::string text() const;
};

/// Lets this process have as many files open as it may at most: each child takes about ten, and gets the
/// limit of before. Before there are threads.
void allowManyChildren();

/// Runs the program to its end, with nothing to read, without descriptors of this process, and in a process
/// group of its own. The limit and the stop kill the whole group; what is left of it when the program has
/// ended is killed, too. When this process or the calling thread ends, the program is. Any thread.
ChildEnd runChild(const ChildCommand& command, const std::stop_token& stop = {});

} // namespace qrv::batch
