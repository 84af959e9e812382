#include "Platform/Foundation/Sysctl.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <mutex>
#include <set>
#include <vector>

#include <sys/utsname.h>
#include <unistd.h>

namespace qrv {

namespace {

using Value = std::optional<std::string>;

std::mutex folderMutex;

std::string& folderOfTest() {
    static auto& folder = *new std::string; // never destroyed
    return folder;
}

std::string systemPath(const std::string& path) {
    const std::lock_guard lock(folderMutex);
    return folderOfTest() + path;
}

Value text(std::string value) {
    if (value.empty()) return {};
    value.push_back('\0');
    return value;
}

template <class Integer>
Value bytesOf(Integer value) {
    std::string bytes(sizeof value, '\0');
    std::copy_n(reinterpret_cast<const char*>(&value), sizeof value, bytes.begin());
    return bytes;
}

/// Clamps counts that do not fit into the 4 bytes of their name.
Value int32(long long value) {
    if (value <= 0) return {};
    return bytesOf(
        static_cast<std::int32_t>(std::min<long long>(value, std::numeric_limits<std::int32_t>::max())));
}

Value int64(long long value) {
    return value > 0 ? bytesOf(static_cast<std::int64_t>(value)) : Value();
}

/// Returns a small file's contents up to the first line end or zero byte; empty if it cannot be read.
std::string firstLine(const std::string& path) {
    std::ifstream file(systemPath(path), std::ios::binary);
    std::string line;
    std::getline(file, line, '\0'); // no exception if the kernel refuses to read it
    line.resize(std::min(line.size(), line.find('\n')));
    while (!line.empty() && line.back() == ' ') line.pop_back();
    return line;
}

long long number(const std::string& text) {
    return std::strtoll(text.c_str(), nullptr, 10);
}

/// Returns the value of the first "name : value" line of /proc/cpuinfo.
std::string processorDetail(std::string_view name) {
    std::ifstream file(systemPath("/proc/cpuinfo"));
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos || !line.starts_with(name)) continue;
        const std::size_t value = line.find_first_not_of(" \t", colon + 1);
        if (value != std::string::npos) return line.substr(value);
    }
    return {};
}

/// Reads one file of every processor's folder, omitting empty ones.
std::vector<std::string> ofEachProcessor(const char* file) {
    const std::filesystem::path folder = "/sys/devices/system/cpu";
    std::vector<std::string> values;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(systemPath(folder), error)) {
        const std::string name = entry.path().filename();
        const bool isProcessor = name.starts_with("cpu") && name.size() > 3 &&
                                 name.find_first_not_of("0123456789", 3) == std::string::npos;
        if (!isProcessor) continue;
        if (std::string value = firstLine(folder / name / file); !value.empty()) {
            values.push_back(std::move(value));
        }
    }
    return values;
}

std::string hardwareModel() {
    for (const char* path : {"/sys/class/dmi/id/product_name", "/sys/firmware/devicetree/base/model"}) {
        if (std::string model = firstLine(path); !model.empty()) return model;
    }
    return {};
}

/// Counts the cores: the threads of one core have the same list of siblings.
long long physicalProcessors() {
    const std::vector<std::string> siblings = ofEachProcessor("topology/thread_siblings_list");
    const std::set<std::string> cores(siblings.begin(), siblings.end());
    return cores.empty() ? sysconf(_SC_NPROCESSORS_CONF) : static_cast<long long>(cores.size());
}

/// The fastest processor's frequency in hertz: what the frequency driver reports (in kilohertz), or the
/// nominal one.
long long processorFrequency() {
    long long hertz = 0;
    for (const std::string& value : ofEachProcessor("cpufreq/cpuinfo_max_freq")) {
        hertz = std::max(hertz, number(value) * 1000);
    }
    if (hertz > 0) return hertz;
    return static_cast<long long>(std::strtod(processorDetail("cpu MHz").c_str(), nullptr) * 1e6);
}

utsname system() {
    utsname names = {};
    uname(&names);
    return names;
}

struct Entry {
    std::string_view name;
    Value (*read)();
};

constexpr std::array entries{
    Entry{"hw.activecpu", [] { return int32(sysconf(_SC_NPROCESSORS_ONLN)); }},
    Entry{"hw.cpufrequency", [] { return int64(processorFrequency()); }},
    Entry{"hw.cpufrequency_max", [] { return int64(processorFrequency()); }},
    Entry{"hw.logicalcpu", [] { return int32(sysconf(_SC_NPROCESSORS_ONLN)); }},
    Entry{"hw.logicalcpu_max", [] { return int32(sysconf(_SC_NPROCESSORS_CONF)); }},
    Entry{"hw.machine", [] { return text(system().machine); }},
    Entry{"hw.memsize",
          [] { return int64(static_cast<long long>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE)); }},
    Entry{"hw.model", [] { return text(hardwareModel()); }},
    Entry{"hw.ncpu", [] { return int32(sysconf(_SC_NPROCESSORS_ONLN)); }},
    Entry{"hw.pagesize", [] { return int64(sysconf(_SC_PAGESIZE)); }},
    Entry{"hw.physicalcpu", [] { return int32(physicalProcessors()); }},
    Entry{"hw.physicalcpu_max", [] { return int32(physicalProcessors()); }},
    Entry{"kern.argmax", [] { return int32(sysconf(_SC_ARG_MAX)); }},
    Entry{"kern.bootsessionuuid", [] { return text(firstLine("/proc/sys/kernel/random/boot_id")); }},
    Entry{"kern.hostname", [] { return text(system().nodename); }},
    Entry{"kern.maxfiles", [] { return int32(number(firstLine("/proc/sys/fs/file-max"))); }},
    Entry{"kern.maxproc", [] { return int32(number(firstLine("/proc/sys/kernel/pid_max"))); }},
    Entry{"kern.osrelease", [] { return text(system().release); }},
    Entry{"kern.ostype", [] { return text(system().sysname); }},
    Entry{"kern.version", [] { return text(system().version); }},
    Entry{"machdep.cpu.brand_string", [] { return text(processorDetail("model name")); }},
};

} // namespace

std::optional<std::string> sysctlByName(std::string_view name) {
    const auto* found =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.name == name; });
    return found == entries.end() ? Value() : found->read();
}

void setSystemFolderForTesting(const std::string& folder) {
    const std::lock_guard lock(folderMutex);
    folderOfTest() = folder;
}

} // namespace qrv
