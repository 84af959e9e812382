#pragma once

// Property lists of archives, built piece by piece.

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/WebKit/WebArchive.h"

#include <string>
#include <vector>

namespace qrv {

struct SampleResource {
    std::string url;
    std::string text = "text";
    std::string frameName = {};
};

inline NSMutableDictionary resourceList(const SampleResource& sample) {
    NSMutableDictionary resource;
    resource.setObject_forKey(NSData(sample.text), NSString(u"WebResourceData"));
    resource.setObject_forKey(NSString(u"text/html"), NSString(u"WebResourceMIMEType"));
    if (!sample.url.empty()) {
        resource.setObject_forKey(NSString::fromUTF8(sample.url), NSString(u"WebResourceURL"));
    }
    if (!sample.frameName.empty()) {
        resource.setObject_forKey(NSString::fromUTF8(sample.frameName), NSString(u"WebResourceFrameName"));
    }
    return resource;
}

inline NSMutableDictionary archiveList(const SampleResource& main,
                                       const std::vector<SampleResource>& resources = {},
                                       const std::vector<NSMutableDictionary>& frames = {}) {
    NSMutableDictionary archive;
    archive.setObject_forKey(resourceList(main).copy(), NSString(u"WebMainResource"));
    std::vector<id> lists;
    for (const SampleResource& resource : resources) lists.push_back(resourceList(resource).copy());
    archive.setObject_forKey(NSArray(lists), NSString(u"WebSubresources"));
    lists.clear();
    for (const NSMutableDictionary& frame : frames) lists.push_back(frame.copy());
    archive.setObject_forKey(NSArray(lists), NSString(u"WebSubframeArchives"));
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
