#include "Source/Tools/batch/Report/FileLinks.h"

#include "Platform/Foundation/PercentEscapes.h"

#include <filesystem>

namespace qrv::batch {

namespace fs = std::filesystem;

namespace {

/// As browsers see it, which do not follow symbolic links.
fs::path plain(const std::string& path) {
    return fs::absolute(path).lexically_normal();
}

} // namespace

std::optional<std::string> pathBelow(const std::string& folder, const std::string& name) {
    const fs::path path = fs::path(name).lexically_normal();
    if (path.is_absolute() || !path.has_filename() || *path.begin() == ".." || path == ".")
        return std::nullopt;
    return (fs::absolute(folder) / path).string();
}

std::string addressFrom(const std::string& page, const std::string& file) {
    const std::string path = plain(file).lexically_relative(plain(page).parent_path()).string();
    // Without it, what stands before a colon would be a scheme.
    return "./" + percentEscaped(path, "-._~/");
}

} // namespace qrv::batch
