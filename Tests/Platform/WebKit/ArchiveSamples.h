#pragma once

// Property lists of archives, built piece by piece, so that pieces can be shared, replaced and taken away.

#include "Tests/Platform/WebKit/TestArchive.h"

namespace qrv {

struct SampleResource {
    std::string url;
    std::string text = "text";
    std::string frameName = {};
};

inline NSMutableDictionary resourceList(const SampleResource& sample) {
    return propertyListOf(
               TestResource{
                   .url = sample.url, .text = sample.text, .frameName = sample.frameName, .encoding = {}})
        .mutableCopy();
}

inline NSMutableDictionary archiveList(const SampleResource& main,
                                       const std::vector<SampleResource>& resources = {},
                                       const std::vector<NSMutableDictionary>& frames = {}) {
    const auto arrayOf = [](const auto& lists) {
        std::vector<id> elements;
        for (const NSMutableDictionary& list : lists) elements.push_back(list.copy());
        return NSArray(std::move(elements));
    };
    std::vector<NSMutableDictionary> resourceLists;
    for (const SampleResource& resource : resources) resourceLists.push_back(resourceList(resource));
    NSMutableDictionary archive;
    archive.setObject_forKey(resourceList(main).copy(), NSString(u"WebMainResource"));
    archive.setObject_forKey(arrayOf(resourceLists), NSString(u"WebSubresources"));
    archive.setObject_forKey(arrayOf(frames), NSString(u"WebSubframeArchives"));
    return archive;
}

/// What is one object in the list is one in the file.
inline NSData archiveFile(const id& list, NSPropertyListFormat format = NSPropertyListBinaryFormat_v1_0) {
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(list, format, nullptr);
}

inline WebArchive archiveOf(const NSMutableDictionary& list) {
    return WebArchive::initWithData(archiveFile(list.copy()));
}

inline WebResource resourceAt(const WebArchive& archive, std::size_t index) {
    return as<WebResource>(archive.subresources().objectAtIndex(index));
}

inline WebArchive frameAt(const WebArchive& archive, std::size_t index) {
    return as<WebArchive>(archive.subframeArchives().objectAtIndex(index));
}

} // namespace qrv
