#pragma once

// All resources of an archive in one list, with the frames that they belong to.

#include "Platform/WebArchive/WebArchive.h"

#include <cstddef>
#include <string>
#include <vector>

namespace qrv::webarchive {

struct ListedFrame {
    /// "2.1" for the first frame of the second frame of the page; empty for the page itself.
    std::string path;
    /// An index of ResourceList::frames; 0 for the page, too.
    std::size_t parent;
};

struct ListedResource {
    /// An index of ResourceList::frames.
    std::size_t frame;
    bool isMain;
    WebResource resource;

    /// Empty without one.
    std::string address() const { return resource.URL().absoluteString().utf8(); }
};

/// The page comes first, then its frames, each before its own frames; in each of them the main resource, then
/// the subresources, all in the order of the file.
struct ResourceList {
    explicit ResourceList(const WebArchive& archive) { add(archive, {}, 0); }

    std::vector<ListedFrame> frames;
    std::vector<ListedResource> resources;

private:
    void add(const WebArchive& archive, const std::string& path, std::size_t parent);
};

} // namespace qrv::webarchive
