// Reading and replacing files.

#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/FileReplacement.h"
#include "Platform/Foundation/MappedFile.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv {

namespace {

/// What is opened may have become a pipe or a terminal since it was looked at.
constexpr int withoutWaiting = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// Returns 0 or an errno value. The size given first only avoids reallocation: the file may change meanwhile.
int readAll(int fd, std::size_t size, std::string& bytes) {
    constexpr std::size_t chunk = 1 << 16;
    bytes.resize(size + 1);
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

/// What a file holds: its own pages, or a copy.
struct Contents {
    std::shared_ptr<const std::string_view> mapped;
    std::string copied;
};

/// Returns 0 or an errno value.
int readFile(const std::string& path, Contents& contents) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | withoutWaiting));

    struct stat status {};

    if (!file || ::fstat(file.get(), &status) != 0) return errno;
    if (S_ISDIR(status.st_mode)) return EISDIR;
    if (!S_ISREG(status.st_mode)) return ENOTSUP;
    const auto size = static_cast<std::size_t>(status.st_size);
    contents.mapped = mapFile(file.get(), size);
    return contents.mapped ? 0 : readAll(file.get(), size, contents.copied);
}

int writeDirectly(const std::string& path, std::string_view bytes) {
    if (const int refusal = refusalToWrite(path)) return refusal;
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | withoutWaiting, 0666));
    if (!file) return errno;
    if (const int error = writeAll(file.get(), bytes)) return error;
    return file.closeWritten() ? 0 : errno;
}

} // namespace

NSData NSData::initWithContentsOfFile_options_error(const NSString& path, unsigned long /*options*/,
                                                    NSError* error) {
    Contents contents;
    int failure = 0;
    try {
        failure = readFile(path.fileSystemRepresentation(), contents);
    } catch (const std::bad_alloc&) {
        failure = ENOMEM;
    } catch (const std::length_error&) {
        failure = EFBIG;
    }
    if (failure) {
        setError(error, fileReadError(failure, path));
        return {};
    }
    const auto& mapped = contents.mapped;
    return mapped ? NSData(mapped, *mapped) : NSData(std::move(contents.copied));
}

bool NSData::isCutOff() const {
    return qrv::isCutOff(bytes());
}

void NSData::forgetPages() const {
    qrv::forgetPages(bytes());
}

bool NSData::writeToFile_options_error(const NSString& path, NSDataWritingOptions options,
                                       NSError* error) const {
    const std::string name = path.fileSystemRepresentation();
    const bool atomic = (options & NSDataWritingAtomic) != 0;
    const int failure = atomic ? replaceFile(name, bytes()) : writeDirectly(name, bytes());
    if (failure) setError(error, fileWriteError(failure, path));
    return failure == 0;
}

} // namespace qrv
