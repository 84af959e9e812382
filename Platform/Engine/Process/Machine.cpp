#include "Platform/Engine/Process/Machine.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <functional>
#include <limits>
#include <optional>
#include <sstream>

#include <sched.h>
#include <unistd.h>

namespace qrv::engine {

namespace {

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// Files of numbers: "12345", or "max 100000".
template <class Number>
std::optional<Number> numberInFile(const std::string& path) {
    std::ifstream file(path);
    Number number{};
    return file >> number ? std::optional(number) : std::nullopt;
}

/// The value of a line such as "inactive_file 12345" or "MemAvailable:  12345 kB".
std::optional<std::size_t> valueInFile(const std::string& path, const std::string& name) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string first;
        std::size_t value = 0;
        if (words >> first && first == name && words >> value) return value;
    }
    return std::nullopt;
}

/// Calls with the folder of each of this process's groups for a controller, and of those around it; and
/// whether it is of version 2. Reads the lines "number:controllers:/group"; those of version 2 have no
/// controllers.
void visitGroups(const std::string& root, const std::string& controller,
                 const std::function<void(const std::string& folder, bool isVersion2)>& visit) {
    std::ifstream file(root + "/proc/self/cgroup");
    for (std::string line; std::getline(file, line);) {
        const std::size_t first = line.find(':');
        const std::size_t second = line.find(':', first + 1);
        if (first == std::string::npos || second == std::string::npos) continue;
        const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
        const bool isVersion2 = controllers == ",,";
        if (!isVersion2 && controllers.find("," + controller + ",") == std::string::npos) continue;
        const std::string mount = root + "/sys/fs/cgroup" + (isVersion2 ? "" : "/" + controller);
        std::string group = line.substr(second + 1);
        if (!group.starts_with("/") || group == "/") group.clear();
        for (;;) {
            visit(mount + group, isVersion2);
            if (group.empty()) break;
            group.erase(group.find_last_of('/'));
        }
    }
}

std::optional<std::size_t> limitOf(const std::string& folder, bool isVersion2) {
    return numberInFile<std::size_t>(folder + (isVersion2 ? "/memory.max" : "/memory.limit_in_bytes"));
}

std::size_t usedBy(const std::string& folder, bool isVersion2) {
    const std::size_t used =
        numberInFile<std::size_t>(folder + (isVersion2 ? "/memory.current" : "/memory.usage_in_bytes"))
            .value_or(0);
    const std::size_t files =
        valueInFile(folder + "/memory.stat", isVersion2 ? "inactive_file" : "total_inactive_file")
            .value_or(0);
    return used - std::min(used, files);
}

/// The processors of a group's quota; nothing without one.
std::optional<double> processorsOf(const std::string& folder, bool isVersion2) {
    double quota = 0;
    double period = 0;
    if (isVersion2) {
        std::ifstream file(folder + "/cpu.max");
        if (!(file >> quota >> period)) return std::nullopt; // "max 100000", too
    } else {
        quota = numberInFile<double>(folder + "/cpu.cfs_quota_us").value_or(0);
        period = numberInFile<double>(folder + "/cpu.cfs_period_us").value_or(0);
    }
    return quota > 0 && period > 0 ? std::optional(quota / period) : std::nullopt;
}

} // namespace

std::size_t machineMemory(const std::string& root) {
    std::size_t memory = static_cast<std::size_t>(::sysconf(_SC_PHYS_PAGES)) *
                         static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    visitGroups(root, "memory", [&memory](const std::string& folder, bool isVersion2) {
        memory = std::min(memory, limitOf(folder, isVersion2).value_or(none));
    });
    return memory;
}

std::size_t availableMemory(const std::string& root) {
    constexpr std::size_t kibibyte = 1024;
    std::size_t memory =
        valueInFile(root + "/proc/meminfo", "MemAvailable:").value_or(none / kibibyte) * kibibyte;
    visitGroups(root, "memory", [&memory](const std::string& folder, bool isVersion2) {
        const std::optional<std::size_t> limit = limitOf(folder, isVersion2);
        if (limit) memory = std::min(memory, *limit - std::min(*limit, usedBy(folder, isVersion2)));
    });
    return memory;
}

double availableProcessors(const std::string& root) {
    cpu_set_t set;
    double processors = ::sched_getaffinity(0, sizeof set, &set) == 0
                            ? CPU_COUNT(&set)
                            : static_cast<double>(::sysconf(_SC_NPROCESSORS_ONLN));
    visitGroups(root, "cpu", [&processors](const std::string& folder, bool isVersion2) {
        processors = std::min(processors, processorsOf(folder, isVersion2).value_or(processors));
    });
    return processors;
}

} // namespace qrv::engine
