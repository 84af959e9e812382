// Reading and replacing files.

#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv {

namespace {

/// Returns 0 or an errno value. The size asked for first only avoids reallocation: the file may change
/// meanwhile.
int readAll(int fd, std::string& bytes) {
    struct stat status {};

    if (::fstat(fd, &status) != 0) return errno;
    if (S_ISDIR(status.st_mode)) return EISDIR;
    constexpr std::size_t chunk = 1 << 16;
    bytes.resize(static_cast<std::size_t>(status.st_size) + 1);
    std::size_t length = 0;
    for (;;) {
        if (length == bytes.size()) bytes.resize(bytes.size() + std::max(chunk, bytes.size() / 2));
        const ssize_t count = ::read(fd, bytes.data() + length, bytes.size() - length);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        if (count == 0) break;
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return 0;
}

int writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

int writeDirectly(const std::string& path, std::string_view bytes) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!file) return errno;
    if (const int error = writeAll(file.get(), bytes)) return error;
    return file.closeWritten() ? 0 : errno;
}

/// Opens a new file beside `path`, with permissions by the umask. Returns nothing and sets errno on failure.
FileDescriptor openBeside(const std::string& path, std::string& name) {
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    std::random_device random;
    for (;;) {
        name = folder + ".new-" + std::to_string(random()) + "-" + std::to_string(random());
        FileDescriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file || errno != EEXIST) return file;
    }
}

/// Resolves symbolic links, so that the link stays and its target is replaced.
std::string resolved(const std::string& path) {
    char* target = ::realpath(path.c_str(), nullptr);
    if (!target) return path;
    std::string result = target;
    std::free(target); // NOLINT: the system allocated it
    return result;
}

/// Writes to a file beside the destination and renames it, so that the old contents stay until the new ones
/// are complete.
int writeAtomically(const std::string& destination, std::string_view bytes) {
    const std::string path = resolved(destination);

    struct stat status {};

    // Only a regular file can be replaced; a device or pipe is written to.
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) return writeDirectly(path, bytes);
    std::string temporary;
    FileDescriptor file = openBeside(path, temporary);
    if (!file) return errno;
    int error = writeAll(file.get(), bytes);
    if (!file.closeWritten() && !error) error = errno;
    if (!error && ::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
    if (error) ::unlink(temporary.c_str());
    return error;
}

} // namespace

NSData NSData::initWithContentsOfFile_options_error(const NSString& path, unsigned long /*options*/,
                                                    NSError* error) {
    const std::string name = path.fileSystemRepresentation();
    const FileDescriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    std::string bytes;
    int failure = file ? 0 : errno;
    if (!failure) {
        try {
            failure = readAll(file.get(), bytes);
        } catch (const std::bad_alloc&) {
            failure = ENOMEM;
        } catch (const std::length_error&) {
            failure = EFBIG;
        }
    }
    if (failure) {
        setError(error, fileReadError(failure, path));
        return {};
    }
    return NSData(std::move(bytes));
}

bool NSData::writeToFile_options_error(const NSString& path, NSDataWritingOptions options,
                                       NSError* error) const {
    const std::string name = path.fileSystemRepresentation();
    const bool atomic = (options & NSDataWritingAtomic) != 0;
    const int failure = atomic ? writeAtomically(name, bytes()) : writeDirectly(name, bytes());
    if (failure) setError(error, fileWriteError(failure, path));
    return failure == 0;
}

} // namespace qrv
