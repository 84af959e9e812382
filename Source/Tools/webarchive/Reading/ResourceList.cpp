#include "Source/Tools/webarchive/Reading/ResourceList.h"

namespace qrv::webarchive {

void ResourceList::add(const WebArchive& archive, const std::string& path, std::size_t parent) {
    const std::size_t frame = frames.size();
    frames.push_back({path, parent});
    resources.push_back({frame, true, archive.mainResource()});
    for (const id& element : archive.subresources()) {
        resources.push_back({frame, false, as<WebResource>(element)});
    }
    std::size_t number = 0;
    for (const id& element : archive.subframeArchives()) {
        add(as<WebArchive>(element), (path.empty() ? "" : path + ".") + std::to_string(++number), frame);
    }
}

} // namespace qrv::webarchive
