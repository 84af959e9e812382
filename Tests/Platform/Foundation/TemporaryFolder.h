#pragma once

// A folder that goes with its scope.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace qrv {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "platform-test-XXXXXX").string();
        if (mkdtemp(name.data())) path_ = name;
    }

    ~TemporaryFolder() {
        std::error_code error;
        if (!path_.empty()) std::filesystem::remove_all(path_, error);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }

    /// Writes a file of the folder, and the folders above it where they are missing.
    std::string write(const std::string& name, std::string_view bytes) const {
        const std::filesystem::path file = std::filesystem::path(path_) / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file.string();
    }

private:
    std::string path_;
};

} // namespace qrv
