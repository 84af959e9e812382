#pragma once

// How the kernel confines the engine's processes, watched while they run.

#include <atomic>
#include <map>
#include <set>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace qrv::batch {

/// One process of the engine, as it was seen last.
struct EngineProcess {
    /// "renderer", "zygote", ...; empty for the one that the tool has started.
    std::string type;
    std::string program; ///< the path of its file; empty where that cannot be seen
    /// The namespaces, "net", "pid" and so on, that are not those of this process; nothing to compare where
    /// they cannot be seen.
    std::set<std::string> ownNamespaces;
    bool namespacesAreKnown = false;
    /// What the namespaces are called, to compare processes with each other: "net:[4026531840]".
    std::map<std::string, std::string> namespaces;
    long long user = -1;        ///< its effective one
    int systemCallFilters = -1; ///< how many there are around it; -1: not known
    bool isFiltered = false;    ///< there is a filter of system calls
    bool hasNoNewPrivileges = false;
    bool hasCapabilities = true; ///< in its own user namespace
    /// The network's interfaces but for "lo"; nothing can be reached without any.
    std::set<std::string> interfaces;
    bool interfacesAreKnown = false;
    int looks = 0; ///< how often it was seen
};

/// From its making on a thread looks at the engine below this process, every few milliseconds.
class EngineWatching {
public:
    explicit EngineWatching(std::string folder = "/proc");
    EngineWatching(const EngineWatching&) = delete;
    EngineWatching& operator=(const EngineWatching&) = delete;
    ~EngineWatching();

    /// Ends the thread. What was seen, in the order of the processes' numbers.
    std::vector<EngineProcess> end();

private:
    void look();

    std::string folder_;
    std::map<pid_t, EngineProcess> seen_; // the thread's, while there is one
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

} // namespace qrv::batch
