#pragma once

// The folder that an archive is extracted to. Nothing is written outside of it, and no link in it is
// followed.

#include "Platform/Foundation/FileDescriptor.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace qrv::webarchive {

class OutputFolder {
public:
    /// Makes the folder, unless it is there; one that is there has to be empty, unless `replaces`: then files
    /// of the same names are replaced, and others stay. No more than `mostBytes` are going to be written.
    /// Throws Failure, as all of these do.
    OutputFolder(const std::string& path, bool replaces, std::size_t mostBytes);

    /// Keeps the process from changing any other file, as far as the kernel can.
    void confineToIt() const;

    /// Makes a folder in it. `name` is a name without slashes.
    void makeFolder(const std::string& name);

    /// Writes a file in it, "name" or "folder/name" with a folder that was made.
    void write(const std::string& name, std::string_view bytes);

private:
    FileDescriptor createFile(const std::string& name) const;

    std::string path_;
    bool replaces_;
    std::size_t bytesLeft_;
    FileDescriptor folder_;
    std::string innerName_;
    FileDescriptor inner_;
};

} // namespace qrv::webarchive
