#pragma once

// A folder of a test's own, gone with its contents when the test ends.

#include "Platform/Foundation/NSString.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qrv {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "web2pdf-test.XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
        path_ = name;
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }

    NSString pathOf(std::string_view name) const { return NSString::fromFileSystem((path_ / name).string()); }

    /// Writes a file, and makes the folders above it where they are missing. Its path is the result.
    NSString write(std::string_view name, std::string_view contents) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << contents;
        return pathOf(name);
    }

    /// Empty for a file that is not there.
    std::string read(std::string_view name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::size_t count() const {
        const std::filesystem::directory_iterator entries(path_);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

private:
    std::filesystem::path path_;
};

} // namespace qrv
