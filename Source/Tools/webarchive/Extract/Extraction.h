#pragma once

// An archive as files, which refer to each other.

#include "Platform/Engine/Archive/ArchiveIndex.h"
#include "Source/Tools/webarchive/Extract/FileNames.h"
#include "Source/Tools/webarchive/Extract/OutputFolder.h"
#include "Source/Tools/webarchive/Extract/PageText.h"
#include "Source/Tools/webarchive/Reading/ResourceList.h"

#include <map>

namespace qrv::webarchive {

/// index.html is the page; the folder "files" has all else: frame-1.html, ... in the order of the archive,
/// and each resource under a name that is made of its address.
class Extraction {
public:
    explicit Extraction(const WebArchive& archive);

    /// How much writing is reasonable: archives may share bytes among many resources.
    std::size_t mostBytes() const { return mostBytes_; }

    /// Throws Failure.
    void write(OutputFolder& folder);

private:
    /// A text, and what its references are relative to.
    struct Source {
        std::size_t frame;
        std::string base;
        bool isIndex; // else it is in the folder "files"
        bool hasFrames;
    };

    std::string takeName(const ListedResource& listed);
    std::string contents(const ListedResource& listed, bool isIndex);
    std::string baseOf(const ListedResource& listed, const std::string& markup) const;
    PageLinks links(const Source& source);
    static std::string relative(const std::string& file, const Source& source);
    std::optional<std::string> file(const std::string& reference, const Source& source) const;
    std::optional<std::string> link(const std::string& reference, const Source& source) const;
    std::optional<std::string> takeFrame(const std::string& name, const std::string& reference,
                                         const Source& source);

    ResourceList list_;
    engine::ArchiveIndex index_; // with the same numbers for frames
    FileNames names_;
    std::vector<std::string> files_;              // of each listed resource
    std::map<const Object*, std::string> fileOf_; // of each different one
    std::vector<std::string> pages_;              // of each frame the file of its main resource
    std::vector<std::string> bases_;              // of each frame, once its page has been written
    std::vector<std::string> encodings_;          // of each frame's page
    std::size_t framesAsked_ = 0;
    std::size_t mostBytes_ = 0;
};

} // namespace qrv::webarchive
