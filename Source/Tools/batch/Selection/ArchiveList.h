#pragma once

// Which archives a batch converts, and where their PDFs go.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace qrv::batch {

/// An archive and its PDF. Paths are any bytes.
struct Item {
    std::string archive;
    /// Below the output folder.
    std::string pdf;

    bool operator==(const Item&) const = default;
};

/// Collects archives. Folders are searched whole for files named "*.webarchive" in any case; links to folders
/// are not followed, and a folder that cannot be read is listed like an archive without a name in it, so that
/// its conversion fails.
class ArchiveList {
public:
    /// An argument: a folder, whose tree the PDFs get, or a file, whose name its PDF gets. Throws Failure if
    /// there is nothing of this name.
    void addSource(const std::string& path);

    /// Paths, each ended by this character. The PDF has the path as it is listed, from its first folder on,
    /// or its way from `base`. What is listed and is not there will fail. Throws Failure for a path that is
    /// not below `base` or holds NUL, and for a list that cannot be read.
    void addListed(std::istream& list, char end, const std::optional<std::string>& base);

    /// In the order of the PDFs' paths, each once. Throws Failure if two archives would become the same PDF.
    std::vector<Item> items() &&;

private:
    void addFolder(const std::string& folder, const std::string& place);

    std::vector<Item> items_;
};

} // namespace qrv::batch
