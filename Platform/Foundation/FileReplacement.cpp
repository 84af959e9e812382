#include "Platform/Foundation/FileReplacement.h"

#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/SignalsBlocked.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <optional>
#include <random>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv {

namespace {

constexpr mode_t byTheUmask = 0666;

/// Held while a new file gets or loses a temporary name. Recursive, since a thread that ends the process
/// keeps it and may still write the answer.
std::recursive_timed_mutex naming;

/// The temporary names of files that are being written. Guarded by `naming`; never destroyed, since another
/// thread may end the process while this one runs its destructors.
std::set<std::string>& temporaryNames() {
    static auto* names = new std::set<std::string>;
    return *names;
}

/// The folder of a file, with the slash; empty for the working folder.
std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

std::string nameBeside(const std::string& path) {
    std::random_device random;
    return folderOf(path) + ".new-" + std::to_string(random()) + "-" + std::to_string(random());
}

/// Follows the links at the end of the path. Those above it need not be known.
std::string followed(std::string path) {
    constexpr int most = 40; // as the system does; it has refused circles before
    std::error_code isNoLink;
    for (int links = 0; links < most; ++links) {
        const std::filesystem::path target = std::filesystem::read_symlink(path, isNoLink);
        if (isNoLink) break;
        path = std::filesystem::path(path).parent_path() / target;
    }
    return path;
}

/// Gives an unnamed file its name. False, with errno set, if that cannot be done.
bool link(const FileDescriptor& file, const std::string& name) {
    const std::string unnamed = "/proc/self/fd/" + std::to_string(file.get());
    return ::linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

/// A link is made only where there is nothing yet: a file that is there is replaced by way of a second name.
std::optional<int> linkInPlace(const FileDescriptor& file, const std::string& path) {
    const SignalsBlocked untilRenamed;
    const std::lock_guard lock(naming);
    if (link(file, path)) return 0;
    if (errno != EEXIST) return {};
    const std::string temporary = nameBeside(path);
    if (!link(file, temporary)) return {};
    if (::rename(temporary.c_str(), path.c_str()) == 0) return 0;
    const int error = errno;
    ::unlink(temporary.c_str());
    return error;
}

/// Returns nothing if the file cannot be written in this way.
std::optional<int> replaceByUnnamed(const std::string& path, const FileWriting& write) {
    const std::string folder = folderOf(path);
    const FileDescriptor file(
        ::open(folder.empty() ? "." : folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, byTheUmask));
    if (!file) return {};
    if (const int error = write(file.get())) return error;
    // Some file systems tell write errors when a descriptor is closed, and the file's own must stay open.
    if (!FileDescriptor(::dup(file.get())).closeWritten()) return errno;
    return linkInPlace(file, path);
}

FileDescriptor openTemporary(const std::string& name) {
    const std::lock_guard lock(naming);
    FileDescriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, byTheUmask));
    if (file) temporaryNames().insert(name);
    return file;
}

int replaceByNamed(const std::string& path, const FileWriting& write) {
    const std::string temporary = nameBeside(path);
    FileDescriptor file = openTemporary(temporary);
    if (!file) return errno;
    int error = write(file.get());
    if (!file.closeWritten() && !error) error = errno;
    const SignalsBlocked untilRenamed;
    const std::lock_guard lock(naming);
    if (!error && ::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
    if (error) ::unlink(temporary.c_str());
    temporaryNames().erase(temporary);
    return error;
}

} // namespace

int writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

int refusalToWrite(const std::string& path) {
    struct stat status {};

    if (path.empty()) return ENOENT;
    if (::stat(path.c_str(), &status) != 0) return errno == ENOENT ? 0 : errno;
    if (S_ISREG(status.st_mode)) return 0;
    return S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
}

int replaceFile(const std::string& path, std::string_view bytes) {
    return replaceFile(path, [bytes](int descriptor) { return writeAll(descriptor, bytes); });
}

int replaceFile(const std::string& path, const FileWriting& write) {
    if (const int refusal = refusalToWrite(path)) return refusal;
    const std::string file = followed(path);
    const std::optional<int> error = replaceByUnnamed(file, write);
    return error ? *error : replaceByNamed(file, write);
}

void abandonReplacements() {
    constexpr std::chrono::milliseconds patience{200};
    const bool mine = naming.try_lock_for(patience); // and never given back
    if (!mine) return;
    for (const std::string& name : temporaryNames()) ::unlink(name.c_str());
}

} // namespace qrv
