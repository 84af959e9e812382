#include "Platform/Engine/Process/EngineLocator.h"

#include <cstdlib>
#include <iterator>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv::engine {

namespace {

constexpr const char* places[] = {
    WEB2PDF_ENGINE_PATH,
    "/usr/lib/chromium/chromium-headless-shell",
    "/usr/lib64/chromium-browser/headless_shell",
    "/usr/lib/chromium-browser/headless_shell",
    "/usr/lib/chromium/chromium",
    "/usr/lib64/chromium-browser/chromium-browser",
    "/usr/lib64/chromium/chromium",
    "/opt/google/chrome/chrome",
};

constexpr const char* commands[] = {
    "chromium-headless-shell", "chrome-headless-shell", "headless_shell", "chromium", "chromium-browser",
};

bool isExecutableFile(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

EngineSearch EngineSearch::fromEnvironment() {
    return {.chosen = environmentValue("WEB2PDF_ENGINE"),
            .places = {std::begin(engine::places), std::end(engine::places)},
            .path = environmentValue("PATH")};
}

std::optional<std::string> programInPath(std::string_view directories, std::string_view name) {
    while (!directories.empty()) {
        std::size_t length = directories.find(':');
        std::string candidate(directories.substr(0, length));
        candidate.append("/").append(name);
        // Relative entries are skipped: what runs must not depend on the working directory.
        if (directories.front() == '/' && isExecutableFile(candidate)) return candidate;
        if (length == std::string_view::npos) break;
        directories.remove_prefix(length + 1);
    }
    return std::nullopt;
}

std::optional<std::string> programInPath(std::string_view name) {
    return programInPath(environmentValue("PATH"), name);
}

std::optional<std::string> locateEngine(const EngineSearch& search) {
    if (!search.chosen.empty())
        return isExecutableFile(search.chosen) ? std::optional(search.chosen) : std::nullopt;
    for (const auto& place : search.places)
        if (isExecutableFile(place)) return place;
    for (const char* command : commands)
        if (auto found = programInPath(search.path, command)) return found;
    return std::nullopt;
}

} // namespace qrv::engine
