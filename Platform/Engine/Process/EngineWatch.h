#pragma once

// Looks after the engine's processes: whether those that it cannot do without are there, and how much memory
// they hold. An engine whose zygote or page process was killed may never say so.
//
//     EngineWatch watch(pid, limit);
//     if (const auto fault = watch.look(hasAnswered)) ... // every lookInterval

#include "Platform/Engine/Process/ProcessTree.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qrv::engine {

class EngineWatch {
public:
    enum class Fault {
        ended,          ///< the engine itself is a zombie; its connection may be held open by another process
        zygoteLost,     ///< no page process could be started any more
        pageLost,       ///< there is no page process where there was one
        memoryExceeded, ///< its processes together hold more memory than they may
    };

    static constexpr std::chrono::milliseconds lookInterval{200};
    /// A process has to be missing for so many looks: pages change their processes when they navigate, and an
    /// engine that ends by itself should tell so itself.
    static constexpr int looksToBelieve = 10;

    /// `memoryLimit` in bytes; `processFolder` stands for /proc.
    EngineWatch(pid_t engine, std::size_t memoryLimit, std::string processFolder = "/proc");

    /// Costs about a millisecond. Nothing when all is well. An engine that has answered has started all that
    /// it starts its page processes with.
    std::optional<Fault> look(bool hasAnswered);

private:
    std::optional<Fault> absence(const std::vector<ProcessState>& tree, bool hasAnswered);

    pid_t engine_;
    std::size_t memoryLimit_;
    std::string processFolder_;
    std::set<pid_t> zygotes_; // that were seen
    bool hadPage_ = false;
    int absentLooks_ = 0; // one after the other
};

} // namespace qrv::engine
