#include "Source/Tools/webarchive/Creating/PageFolder.h"

#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/Foundation/URLPieces.h"
#include "Source/Tools/Common/Failure.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace qrv::webarchive {

namespace {

namespace fs = std::filesystem;

std::string originOf(const URLPieces& pieces) {
    return std::string(pieces.scheme) + "://" + std::string(pieces.authority);
}

/// The decoded parts of a path, without those that are empty.
std::vector<std::string> segmentsOf(std::string_view path) {
    std::vector<std::string> segments;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (end > 0) segments.push_back(percentDecoded(path.substr(0, end)));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return segments;
}

bool isName(const std::string& segment) {
    return segment != "." && segment != ".." &&
           segment.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

std::string joined(const std::vector<std::string>& names) {
    std::string path;
    for (const std::string& name : names) path += (path.empty() ? "" : "/") + name;
    return path;
}

/// The kernel sees to it that no link leads out, even one that is made meanwhile.
FileDescriptor openBelow(int folder, const std::string& path) {
    struct open_how how {};

    how.flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    return FileDescriptor(
        static_cast<int>(::syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how))); // NOLINT
}

std::string whyNotOpened(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return "there is no such file";
    case EXDEV:
        return "it leads out of the folder";
    default:
        return std::strerror(error);
    }
}

/// 0 or an errno value.
int readAll(int descriptor, std::string& bytes) {
    constexpr std::size_t step = std::size_t{1} << 20;
    while (true) {
        const std::size_t before = bytes.size();
        bytes.resize(before + step);
        const ssize_t count = ::read(descriptor, bytes.data() + before, step);
        bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0) return 0;
        if (count < 0 && errno != EINTR) return errno;
    }
}

} // namespace

PageFolder::PageFolder(const std::string& page, const std::string& root, const NSURL& address) {
    std::error_code error;
    const fs::path folder = fs::canonical(fs::absolute(page).parent_path(), error);
    if (error) throw Failure(page + ": " + error.message());
    const fs::path top = root.empty() ? folder : fs::canonical(root, error);
    if (error) throw Failure(root + ": " + error.message());
    const fs::path below = folder.lexically_relative(top);
    if (*below.begin() == "..") throw Failure(page + " is not below " + root);
    for (const fs::path& name : below) {
        if (name != ".") place_.push_back(name);
    }
    root_ = FileDescriptor(::open(top.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!root_) throw Failure(top.string() + ": " + std::strerror(errno));

    const std::string url = engine::normalizedURL(address.absoluteString().utf8());
    const URLPieces pieces = splitURL(url);
    origin_ = originOf(pieces);
    segments_ = segmentsOf(pieces.path.substr(0, pieces.path.rfind('/') + 1));
}

PageFolder::File PageFolder::fileAt(const NSURL& url) const {
    const std::string text = engine::normalizedURL(url.absoluteString().utf8());
    const URLPieces pieces = splitURL(text);
    if (originOf(pieces) != origin_) return {{}, {}, "it is not on this disk"};

    const std::vector<std::string> wanted = segmentsOf(pieces.path);
    const auto [own, other] = std::mismatch(segments_.begin(), segments_.end(), wanted.begin(), wanted.end());
    std::vector<std::string> names = place_;
    for (auto up = own; up != segments_.end(); ++up) {
        if (names.empty()) return {{}, {}, "it is out of the folder"};
        names.pop_back();
    }
    names.insert(names.end(), other, wanted.end());
    if (!std::all_of(names.begin(), names.end(), isName)) return {{}, {}, "its name cannot be a file's"};

    File file{.name = joined(names), .bytes = {}, .refusal = {}};
    const FileDescriptor opened = openBelow(root_.get(), file.name.empty() ? "." : file.name);
    if (!opened) {
        file.refusal = whyNotOpened(errno);
        return file;
    }

    struct stat status {};

    if (::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        file.refusal = S_ISDIR(status.st_mode) ? "it is a folder" : "it is no file";
        return file;
    }
    std::string bytes;
    if (const int failure = readAll(opened.get(), bytes)) {
        file.refusal = std::strerror(failure);
    } else {
        file.bytes = NSData(std::move(bytes));
    }
    return file;
}

} // namespace qrv::webarchive
