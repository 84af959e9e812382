#include "Platform/Confinement/FileRules.h"

#include "Platform/Foundation/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <utility>

namespace qrv {

namespace {

// What the kernel may know and its header does not.
constexpr FileRules::Rights truncateFile = 1ULL << 14;
constexpr FileRules::Rights controlDevice = 1ULL << 15;
constexpr std::uint64_t bindAndConnectTCP = 3;
constexpr std::uint64_t abstractSocketsAndSignals = 3;

struct RulesetAttributes {
    std::uint64_t files;
    std::uint64_t network;
    std::uint64_t scopes;
};

constexpr FileRules::Rights rightsToFiles = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                            LANDLOCK_ACCESS_FS_READ_FILE | truncateFile | controlDevice;

/// What this version of Landlock knows of the rights.
FileRules::Rights known(FileRules::Rights rights, long version) {
    if (version < 2) rights &= ~FileRules::Rights{LANDLOCK_ACCESS_FS_REFER};
    if (version < 3) rights &= ~truncateFile;
    if (version < 5) rights &= ~controlDevice;
    return rights;
}

bool addRule(int ruleset, const char* path, FileRules::Rights rights) {
    const FileDescriptor place(::open(path, O_PATH | O_CLOEXEC));

    struct stat status {};

    if (!place || ::fstat(place.get(), &status) != 0) return true;
    if (!S_ISDIR(status.st_mode)) rights &= rightsToFiles;
    const landlock_path_beneath_attr rule{.allowed_access = rights, .parent_fd = place.get()};
    return rights == 0 ||
           ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0 ||
           errno == EBADFD; // a pipe or the like, which rules do not close
}

} // namespace

const FileRules::Rights FileRules::read = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
const FileRules::Rights FileRules::execute = LANDLOCK_ACCESS_FS_EXECUTE;
const FileRules::Rights FileRules::write = LANDLOCK_ACCESS_FS_WRITE_FILE | truncateFile | controlDevice;
const FileRules::Rights FileRules::change =
    FileRules::write | LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE |
    LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
    LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
    LANDLOCK_ACCESS_FS_MAKE_SYM | LANDLOCK_ACCESS_FS_REFER;

FileRules FileRules::closingAll() {
    return {read | execute | change, true};
}

FileRules FileRules::leavingRead() {
    return {execute | change, false};
}

void FileRules::allow(std::string path, Rights rights) {
    rules_.push_back({std::move(path), rights & closed_});
}

void FileRules::allowReplacing(const std::string& path) {
    const std::filesystem::path given = path;
    if (given.empty()) return;
    std::error_code error;
    if (std::filesystem::exists(given, error) && !std::filesystem::is_regular_file(given, error)) return;
    for (const std::filesystem::path& file :
         {given, given.lexically_normal(), std::filesystem::weakly_canonical(given, error)}) {
        const std::filesystem::path folder = file.parent_path();
        allow(folder.empty() ? "." : folder.string(), change);
    }
}

bool FileRules::enforce() const {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) return false;
    const RulesetAttributes attributes{.files = known(closed_, version),
                                       .network = isolates_ && version >= 4 ? bindAndConnectTCP : 0,
                                       .scopes = isolates_ && version >= 6 ? abstractSocketsAndSignals : 0};
    // An older kernel takes the longer structure as long as what it does not know is zero.
    const FileDescriptor ruleset(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    return ruleset &&
           std::all_of(rules_.begin(), rules_.end(),
                       [&](const Rule& rule) {
                           return addRule(ruleset.get(), rule.path.c_str(), known(rule.rights, version));
                       }) &&
           ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0) == 0;
}

} // namespace qrv
