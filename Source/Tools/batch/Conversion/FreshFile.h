#pragma once

// A new file that is going to take another one's place, and is gone if it does not.

#include "Source/Tools/batch/Results/Record.h"

#include <optional>
#include <string>

namespace qrv::batch {

class FreshFile {
public:
    /// Of the file at a path below the folder. Its name goes by that path: what a killed run has left of it
    /// is in the way of nobody else, and goes when that file is made again.
    FreshFile(const std::string& folder, const std::string& path);
    FreshFile(const FreshFile&) = delete;
    FreshFile& operator=(const FreshFile&) = delete;
    ~FreshFile();

    /// Makes the folders, and removes what an earlier run may have left.
    std::optional<ConversionError> prepare();
    /// Removes the file, if there is one.
    void discard() const;
    std::optional<ConversionError> moveIntoPlace() const;

    /// Where the new file is written.
    const std::string& path() const { return path_; }

    /// Where it goes.
    const std::string& place() const { return place_; }

private:
    std::string place_;
    std::string path_;
};

} // namespace qrv::batch
