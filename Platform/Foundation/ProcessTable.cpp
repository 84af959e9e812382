#include "Platform/Foundation/ProcessTable.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <mutex>

namespace qrv {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kernelLength = 15;
constexpr std::size_t platformLength = 16;

std::mutex folderMutex;

std::string& folderOfTest() {
    static auto& folder = *new std::string; // never destroyed
    return folder;
}

fs::path processFolder() {
    const std::lock_guard lock(folderMutex);
    return folderOfTest().empty() ? "/proc" : folderOfTest();
}

std::optional<int> processIdentifier(const std::string& name) {
    int identifier = 0;
    const char* end = name.data() + name.size();
    const auto result = std::from_chars(name.data(), end, identifier);
    return result.ec == std::errc() && result.ptr == end ? std::optional(identifier) : std::nullopt;
}

/// Reads the line "Uid:    real    effective       saved   file system".
std::optional<uid_t> realUser(const fs::path& process) {
    std::ifstream file(process / "status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("Uid:")) return static_cast<uid_t>(std::strtoul(line.c_str() + 4, nullptr, 10));
    }
    return {};
}

std::string shortName(const fs::path& process) {
    std::ifstream file(process / "comm", std::ios::binary);
    std::string name;
    std::getline(file, name, '\0'); // the whole file; no exception if the process ends meanwhile
    if (!name.empty() && name.back() == '\n') name.pop_back();
    if (name.size() != kernelLength) return name.substr(0, platformLength); // kernel threads may have more

    std::error_code error;
    std::string executable = fs::read_symlink(process / "exe", error).filename();
    constexpr std::string_view deleted = " (deleted)"; // what the kernel appends to a removed file's name
    if (executable.ends_with(deleted)) executable.resize(executable.size() - deleted.size());
    return executable.starts_with(name) ? executable.substr(0, platformLength) : name;
}

} // namespace

int readProcessTable(uid_t user, std::optional<std::vector<std::string>>& names) {
    const fs::path folder = processFolder();
    std::error_code error;
    std::vector<int> identifiers;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        if (const auto identifier = processIdentifier(it->path().filename())) {
            identifiers.push_back(*identifier);
        }
    }
    if (error) return error.value();

    std::sort(identifiers.begin(), identifiers.end());
    std::vector<std::string> found;
    for (const int identifier : identifiers) {
        const fs::path process = folder / std::to_string(identifier);
        if (realUser(process) != user) continue;
        if (std::string name = shortName(process); !name.empty()) found.push_back(std::move(name));
    }
    names = std::move(found);
    return 0;
}

void setProcessFolderForTesting(const std::string& folder) {
    const std::lock_guard lock(folderMutex);
    folderOfTest() = folder;
}

} // namespace qrv
