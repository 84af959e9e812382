#include "Platform/Engine/Process/EngineMemory.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <optional>
#include <string_view>
#include <sys/resource.h>
#include <unistd.h>

namespace qrv::engine {

namespace {

constexpr char variable[] = "WEB2PDF_MEMORY_LIMIT";
constexpr std::size_t mebibyte = std::size_t{1} << 20;
constexpr std::size_t reserve = std::size_t{1} << 30;
constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// Nothing for a text that is no number, or one that is too large.
std::optional<std::size_t> number(std::string_view text) {
    std::size_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

std::optional<std::size_t> numberInFile(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    return std::getline(file, line) ? number(line) : std::nullopt;
}

/// The least limit of a group and of those around it.
std::size_t leastLimit(const std::string& mount, std::string group, const std::string& file) {
    std::size_t least = none;
    for (;;) {
        least = std::min(
            least, numberInFile(std::string(mount).append(group).append("/").append(file)).value_or(none));
        if (group.empty()) return least;
        group.erase(group.find_last_of('/'));
    }
}

/// Reads the lines "number:controllers:/group"; those of version 2 have no controllers.
std::size_t groupLimit(const std::string& root) {
    std::size_t least = none;
    std::ifstream file(root + "/proc/self/cgroup");
    for (std::string line; std::getline(file, line);) {
        const std::size_t first = line.find(':');
        const std::size_t second = line.find(':', first + 1);
        if (first == std::string::npos || second == std::string::npos) continue;
        const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
        std::string group = line.substr(second + 1);
        if (!group.starts_with("/") || group == "/") group.clear();
        const std::string mount = root + "/sys/fs/cgroup";
        if (controllers == ",,")
            least = std::min(least, leastLimit(mount, group, "memory.max"));
        else if (controllers.find(",memory,") != std::string::npos)
            least = std::min(least, leastLimit(mount + "/memory", group, "memory.limit_in_bytes"));
    }
    return least;
}

std::size_t machineMemory() {
    return static_cast<std::size_t>(::sysconf(_SC_PHYS_PAGES)) *
           static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

} // namespace

std::size_t engineMemoryLimit(const std::function<void(const std::string& line)>& log,
                              const std::string& root) {
    if (const char* text = std::getenv(variable)) {
        const std::size_t chosen = number(text).value_or(0);
        if (chosen > 0) return std::min(chosen, none / mebibyte) * mebibyte;
        if (log) log(std::string(variable) + " is no positive number and does not count: " + text);
    }
    return std::min(machineMemory(), groupLimit(root)) / 2;
}

void limitOwnMemory(std::size_t limit) {
    rlimit own{};
    ::getrlimit(RLIMIT_DATA, &own);
    const rlim_t most = std::min<rlim_t>(limit, RLIM_INFINITY - reserve - 1) + reserve;
    own.rlim_cur = std::min(own.rlim_cur, most);
    own.rlim_max = std::min(own.rlim_max, most);
    ::setrlimit(RLIMIT_DATA, &own);
}

} // namespace qrv::engine
