#include "Platform/Foundation/PreferenceFiles.h"

#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_map>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv {

namespace {

/// What the paths depend on.
struct Environment {
    static std::optional<std::string> variable(const char* name) {
        const char* value = std::getenv(name);
        return value ? std::optional<std::string>(value) : std::nullopt;
    }

    static Environment current() {
        return {variable("XDG_CONFIG_HOME"), variable("XDG_CONFIG_DIRS"), variable("HOME")};
    }

    bool isCurrent() const {
        const auto isSame = [](const std::optional<std::string>& known, const char* name) {
            const char* value = std::getenv(name);
            return value ? known == std::string_view(value) : !known;
        };
        return isSame(own, "XDG_CONFIG_HOME") && isSame(shared, "XDG_CONFIG_DIRS") && isSame(home, "HOME");
    }

    std::optional<std::string> own;
    std::optional<std::string> shared;
    std::optional<std::string> home;
};

/// What is known for the whole process, but for the files' contents. Never destroyed: settings are read until
/// the very end.
struct Common {
    std::mutex mutex;
    Environment environment;
    std::map<std::u16string, PreferencePaths, std::less<>> paths; // by domain
    std::set<std::string> warned;
    void (*warn)(const NSString&) = nullptr;
};

Common& common() {
    static Common& instance = *new Common;
    return instance;
}

/// Whether the last change is long enough ago that the next one gets another stamp on every file system.
bool isSettled(const struct stat& s) {
    constexpr time_t coarsestTick = 2;
    return std::time(nullptr) - s.st_ctim.tv_sec > coarsestTick;
}

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    passwd entry = {};
    passwd* found = nullptr;
    char buffer[4096];
    getpwuid_r(getuid(), &entry, buffer, sizeof buffer, &found);
    return found && found->pw_dir ? found->pw_dir : "";
}

/// Returns the folders that a variable lists, without relative ones.
std::vector<std::string> foldersOf(const char* variable, const std::string& standard) {
    const char* value = std::getenv(variable);
    std::string list = value && *value ? value : standard;
    std::vector<std::string> folders;
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = std::min(list.find(':', start), list.size());
        if (list[start] == '/') folders.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    return folders;
}

std::vector<std::string> pathsOf(const NSString& domain) {
    const std::string name = domain.utf8();
    if (name.empty() || name.find_first_of(std::string_view("/\0", 2)) != std::string::npos) return {};
    // XDG_CONFIG_HOME is a single folder, even if it contains a colon.
    const char* own = std::getenv("XDG_CONFIG_HOME");
    std::vector<std::string> folders = {own && *own == '/' ? own : homeFolder() + "/.config"};
    const std::vector<std::string> shared = foldersOf("XDG_CONFIG_DIRS", "/etc/xdg");
    folders.insert(folders.end(), shared.begin(), shared.end());
    for (std::string& folder : folders) folder += "/preferences/" + name + ".plist";
    return folders;
}

void warnOnce(const std::string& path, const NSString& reason) {
    void (*warn)(const NSString&) = nullptr;
    {
        Common& s = common();
        const std::lock_guard lock(s.mutex);
        if (!s.warn || !s.warned.insert(path).second) return;
        warn = s.warn;
    }
    warn(NSString::stringWithFormat(u"Preferences %s cannot be read: %@", path.c_str(), reason));
}

NSDictionary parse(const std::string& path) {
    NSError error;
    const NSData data =
        NSData::initWithContentsOfFile_options_error(NSString::fromFileSystem(path), 0, &error);
    if (!data) {
        warnOnce(path, error.localizedDescription());
        return {};
    }
    const id plist = NSPropertyListSerialization::propertyListWithData(data, &error);
    auto contents = as<NSDictionary>(plist);
    if (!contents) {
        warnOnce(path, plist ? NSString(u"it holds no dictionary")
                             : as<NSString>(error.userInfo().objectForKey(NSString(u"NSDebugDescription"))));
    }
    return contents;
}

} // namespace

void setPreferencesWarning(void (*warn)(const NSString& message)) {
    const std::lock_guard lock(common().mutex);
    common().warn = warn;
}

PreferencePaths preferenceFiles(const NSString& domain) {
    constexpr std::size_t mostDomains = 256;
    Common& s = common();
    const std::lock_guard lock(s.mutex);
    if (!s.environment.isCurrent()) {
        s.environment = Environment::current();
        s.paths.clear();
    }
    if (const auto known = s.paths.find(domain.view()); known != s.paths.end()) return known->second;
    if (s.paths.size() >= mostDomains) s.paths.clear();
    auto files = std::make_shared<const std::vector<std::string>>(pathsOf(domain));
    s.paths.emplace(domain.view(), files);
    return files;
}

struct PreferenceReader::State {
    struct Known {
        Stamp stamp;
        NSDictionary contents;
    };

    std::mutex mutex;
    std::unordered_map<std::string, Known> files;
    std::unordered_map<std::string, std::optional<Stamp>> missing; // with the stamp of the folder
};

PreferenceReader::State& PreferenceReader::state() {
    static State& instance = *new State; // never destroyed
    return instance;
}

PreferenceReader::Stamp PreferenceReader::stampOf(const struct stat& s) {
    return {s.st_dev,          s.st_ino,         s.st_size,        s.st_mtim.tv_sec,
            s.st_mtim.tv_nsec, s.st_ctim.tv_sec, s.st_ctim.tv_nsec};
}

const PreferenceReader::Folder& PreferenceReader::folderOf(const std::string& path) {
    const std::string_view folder = std::string_view(path).substr(0, path.rfind('/'));
    for (const Folder& known : folders_)
        if (known.path == folder) return known;
    Folder& looked = folders_.emplace_back(Folder{std::string(folder), std::nullopt, true});

    struct stat status {};

    if (stat(looked.path.c_str(), &status) == 0) {
        looked.stamp = stampOf(status);
        looked.isSettled = isSettled(status);
    } else {
        looked.isSettled = errno == ENOENT;
    }
    return looked;
}

bool PreferenceReader::isKnownToBeMissing(const std::string& path) {
    std::optional<Stamp> stamp;
    {
        State& s = state();
        const std::lock_guard lock(s.mutex);
        const auto known = s.missing.find(path);
        if (known == s.missing.end()) return false;
        stamp = known->second;
    }
    // A folder that can not be looked at is not one that is missing.
    const Folder& folder = folderOf(path);
    return folder.isSettled && folder.stamp == stamp;
}

/// Looks at the file once more, after its folder, so that none comes unseen between the two. A link that
/// leads nowhere may lead to a file at any time.
void PreferenceReader::rememberMissing(const std::string& path) {
    constexpr std::size_t mostFiles = 1024;

    struct stat link {};

    const Folder& folder = folderOf(path);
    if (!folder.isSettled || lstat(path.c_str(), &link) == 0) return;
    State& s = state();
    const std::lock_guard lock(s.mutex);
    if (s.missing.size() >= mostFiles) s.missing.clear();
    s.missing[path] = folder.stamp;
}

NSDictionary PreferenceReader::read(const std::string& path) {
    if (isKnownToBeMissing(path)) return {};

    struct stat status {};

    if (stat(path.c_str(), &status) != 0) {
        const int error = errno;
        if (error == ENOENT) rememberMissing(path);
        if (error != ENOENT && error != ENOTDIR && error != ENAMETOOLONG) {
            warnOnce(path, posixError(error).localizedDescription());
        }
        return {};
    }
    // Reading anything but a regular file, such as a pipe, might never end.
    if (!S_ISREG(status.st_mode)) {
        warnOnce(path, u"it is no file");
        return {};
    }
    State& s = state();
    {
        const std::lock_guard lock(s.mutex);
        const auto known = s.files.find(path);
        if (known != s.files.end() && known->second.stamp == stampOf(status)) return known->second.contents;
    }
    NSDictionary contents = parse(path);
    if (isSettled(status)) {
        const std::lock_guard lock(s.mutex);
        s.files[path] = {stampOf(status), contents};
    }
    return contents;
}

} // namespace qrv
