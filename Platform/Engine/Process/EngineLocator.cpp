#include "Platform/Engine/Process/EngineLocator.h"

#include <cstdlib>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv::engine {

namespace {

constexpr const char* headlessShellName = "chromium-headless-shell";
constexpr const char* browserName = "chromium";

bool isExecutableFile(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::optional<std::string> findInPath(std::string_view directories, std::string_view name) {
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

} // namespace

EngineSearch EngineSearch::fromEnvironment() {
    return {.chosen = environmentValue("WEB2PDF_ENGINE"),
            .places = {{"/usr/lib/chromium/chromium-headless-shell", true},
                       {"/usr/lib/chromium/chromium", false}},
            .path = environmentValue("PATH")};
}

std::optional<EngineExecutable> locateEngine(const EngineSearch& search) {
    if (!search.chosen.empty()) {
        if (!isExecutableFile(search.chosen)) return std::nullopt;
        // A file of any other name, chosen by a test or an administrator, counts as the headless shell.
        bool isBrowser = search.chosen.substr(search.chosen.rfind('/') + 1) == browserName;
        return EngineExecutable{search.chosen, !isBrowser};
    }
    for (const auto& place : search.places)
        if (isExecutableFile(place.path)) return place;
    for (bool headlessShell : {true, false})
        if (auto path = findInPath(search.path, headlessShell ? headlessShellName : browserName))
            return EngineExecutable{*path, headlessShell};
    return std::nullopt;
}

} // namespace qrv::engine
