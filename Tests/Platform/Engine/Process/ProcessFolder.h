#pragma once

// A folder that stands for /proc, with the processes that a test puts there.

#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <fstream>
#include <map>
#include <string>

namespace qrv::engine {

class ProcessFolder {
public:
    /// Without the kernel's lists of children, a process is found by its parent's number.
    enum class Lists { some, none };

    explicit ProcessFolder(Lists lists = Lists::some) : lists_(lists) {}

    struct Process {
        std::string commandLine = "engine";
        std::string state = "S (sleeping)";
        int anonymousKiB = 0;
        int sharedKiB = 0;
    };

    void add(pid_t pid, pid_t parent, const Process& process) {
        const auto folder = directory_.path() / std::to_string(pid);
        std::filesystem::create_directories(folder / "task" / std::to_string(pid));
        std::ofstream(folder / "cmdline") << process.commandLine;
        std::ofstream(folder / "status")
            << "Name:\tengine\nState:\t" << process.state << "\nPPid:\t" << parent << "\nRssAnon:\t "
            << process.anonymousKiB << " kB\nRssFile:\t  9999 kB\nRssShmem:\t " << process.sharedKiB
            << " kB\n";
        children_[parent] += std::to_string(pid) + " ";
        children_[pid];
        if (lists_ == Lists::none) return;
        for (const auto& [other, list] : children_)
            if (const auto file = listOf(other); std::filesystem::exists(file.parent_path()))
                std::ofstream(file) << list;
    }

    /// Its number stays in its parent's list, as for one that ends while it is looked for.
    void remove(pid_t pid) { std::filesystem::remove_all(directory_.path() / std::to_string(pid)); }

    std::string path() const { return directory_.path().string(); }

private:
    std::filesystem::path listOf(pid_t pid) const {
        const std::string number = std::to_string(pid);
        return directory_.path() / number / "task" / number / "children";
    }

    Lists lists_;
    OpenDirectory directory_;
    std::map<pid_t, std::string> children_;
};

} // namespace qrv::engine
