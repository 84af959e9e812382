#include "Source/Tools/webarchive/Extract/OutputFolder.h"

#include "Platform/Confinement/FileRules.h"
#include "Source/Tools/Common/Failure.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

namespace qrv::webarchive {

namespace {

[[noreturn]] void failWithError(const std::string& path, const char* what) {
    throw Failure(path + " " + what + ": " + std::generic_category().message(errno));
}

bool isEmpty(const FileDescriptor& folder) {
    DIR* const stream = ::fdopendir(::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!stream) return false;
    bool found = false;
    while (const dirent* entry = ::readdir(stream)) {
        const std::string_view name = entry->d_name;
        found = found || (name != "." && name != "..");
    }
    ::closedir(stream);
    return !found;
}

} // namespace

OutputFolder::OutputFolder(const std::string& path, bool replaces, std::size_t mostBytes)
    : path_(path), replaces_(replaces), bytesLeft_(mostBytes) {
    if (::mkdir(path.c_str(), 0777) != 0 && errno != EEXIST) failWithError(path, "cannot be made");
    folder_ = FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder_) failWithError(path, "cannot be opened as a folder");
    if (!replaces && !isEmpty(folder_))
        throw Failure(path + " is not empty; --force writes to it all the same");
}

void OutputFolder::confineToIt() const {
    FileRules rules = FileRules::leavingRead();
    rules.allow("/proc/self/fd/" + std::to_string(folder_.get()), FileRules::change);
#ifdef WEB2PDF_WRITES_REPORTS // of a sanitizer or of coverage, wherever it was told to
    rules.allow("/", FileRules::change);
#endif
    static_cast<void>(rules.enforce());
}

void OutputFolder::makeFolder(const std::string& name) {
    if (::mkdirat(folder_.get(), name.c_str(), 0777) != 0 && (errno != EEXIST || !replaces_))
        failWithError(path_ + "/" + name, "cannot be made");
    inner_ = FileDescriptor(
        ::openat(folder_.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!inner_) failWithError(path_ + "/" + name, "cannot be opened as a folder");
    innerName_ = name;
}

FileDescriptor OutputFolder::createFile(const std::string& name) const {
    const bool isInner = name.starts_with(innerName_ + "/");
    const int folder = isInner ? inner_.get() : folder_.get();
    const char* const last = name.c_str() + (isInner ? innerName_.size() + 1 : 0);
    const auto create = [&] {
        return FileDescriptor(
            ::openat(folder, last, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    };
    FileDescriptor file = create();
    if (!file && errno == EEXIST && replaces_ && ::unlinkat(folder, last, 0) == 0) file = create();
    return file;
}

void OutputFolder::write(const std::string& name, std::string_view bytes) {
    if (bytes.size() > bytesLeft_) throw Failure("the files would be many times as large as the archive");
    bytesLeft_ -= bytes.size();
    FileDescriptor file = createFile(name);
    if (!file) failWithError(path_ + "/" + name, "cannot be made");
    while (!bytes.empty()) {
        const ssize_t count = ::write(file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) failWithError(path_ + "/" + name, "cannot be written");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    if (!file.closeWritten()) failWithError(path_ + "/" + name, "cannot be written");
}

} // namespace qrv::webarchive
