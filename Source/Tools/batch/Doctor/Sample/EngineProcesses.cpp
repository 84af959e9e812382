#include "Source/Tools/batch/Doctor/Sample/EngineProcesses.h"

#include "Platform/Engine/Process/ProcessTree.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace qrv::batch {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds pause(20);

std::string linkOf(const fs::path& path) {
    std::error_code unknown;
    return fs::read_symlink(path, unknown).string();
}

/// "Name:\tvalue" of /proc/PID/status.
std::map<std::string, std::string> statusOf(const fs::path& process) {
    std::map<std::string, std::string> fields;
    std::ifstream file(process / "status");
    for (std::string line; std::getline(file, line);) {
        const std::size_t end = line.find(':');
        const std::size_t start = line.find_first_not_of(" \t", std::min(line.size(), end + 1));
        if (end != std::string::npos && start != std::string::npos)
            fields[line.substr(0, end)] = line.substr(start);
    }
    return fields;
}

/// Of the lines "  eth0: 1 2 3", after two of headings.
std::set<std::string> interfacesOf(std::istream& devices) {
    std::set<std::string> interfaces;
    for (std::string line; std::getline(devices, line);) {
        const std::size_t start = line.find_first_not_of(' ');
        const std::size_t end = line.find(':');
        if (end == std::string::npos || line.find('|') != std::string::npos) continue;
        interfaces.insert(line.substr(start, end - start));
    }
    interfaces.erase("lo");
    return interfaces;
}

EngineProcess stateOf(const fs::path& process, const fs::path& own, std::string type) {
    EngineProcess state;
    state.type = std::move(type);
    state.program = linkOf(process / "exe");
    for (const std::string name : {"user", "pid", "mnt", "net", "ipc"}) {
        const std::string space = linkOf(process / "ns" / name);
        if (space.empty()) continue;
        state.namespacesAreKnown = true;
        state.namespaces[name] = space;
        if (space != linkOf(own / "ns" / name)) state.ownNamespaces.insert(name);
    }
    auto status = statusOf(process);
    std::istringstream users(status["Uid"]); // real, effective, saved, of the file system
    for (int i = 0; i < 2; ++i) users >> state.user;
    state.isFiltered = status["Seccomp"] == "2";
    std::istringstream(status["Seccomp_filters"]) >> state.systemCallFilters;
    state.hasNoNewPrivileges = status["NoNewPrivs"] == "1";
    state.hasCapabilities = status["CapEff"].find_first_not_of('0') != std::string::npos;
    std::ifstream devices(process / "net" / "dev");
    state.interfacesAreKnown = devices.is_open();
    state.interfaces = interfacesOf(devices);
    return state;
}

/// The processes that name their type, and those that they descend from, up to the tool. The tool's other
/// children are none of the engine's.
std::set<pid_t> engineIn(const std::vector<engine::ProcessState>& tree) {
    std::map<pid_t, pid_t> parents;
    for (const engine::ProcessState& process : tree) parents[process.pid] = process.parent;
    const pid_t own = tree.front().pid;
    std::set<pid_t> found;
    for (const engine::ProcessState& process : tree) {
        if (process.type.empty()) continue;
        for (pid_t pid = process.pid; pid != own && parents.contains(pid) && parents[pid] != own;
             pid = parents[pid])
            found.insert(pid);
    }
    return found;
}

} // namespace

EngineWatching::EngineWatching(std::string folder) : folder_(std::move(folder)) {
    thread_ = std::thread([this] {
        while (!isOver_) {
            look();
            std::this_thread::sleep_for(pause);
        }
    });
}

EngineWatching::~EngineWatching() {
    end();
}

std::vector<EngineProcess> EngineWatching::end() {
    isOver_ = true;
    if (thread_.joinable()) thread_.join();
    std::vector<EngineProcess> processes;
    processes.reserve(seen_.size());
    for (const auto& [pid, process] : seen_) processes.push_back(process);
    return processes;
}

void EngineWatching::look() {
    const std::vector<engine::ProcessState> tree = engine::readProcessTree(getpid(), folder_);
    const std::set<pid_t> engine = engineIn(tree);
    for (const engine::ProcessState& process : tree) {
        if (!process.isAlive || !engine.contains(process.pid)) continue;
        EngineProcess state = stateOf(fs::path(folder_) / std::to_string(process.pid),
                                      fs::path(folder_) / std::to_string(getpid()), process.type);
        if (state.user < 0) continue; // it is gone
        // What ends meanwhile loses its network first; it has been seen before.
        EngineProcess& known = seen_[process.pid];
        const int looks = known.looks + 1;
        if (state.interfacesAreKnown || !known.interfacesAreKnown) known = std::move(state);
        known.looks = looks;
    }
}

} // namespace qrv::batch
