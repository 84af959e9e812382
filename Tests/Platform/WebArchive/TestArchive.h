#pragma once

// Web archives made in memory: whole ones in one expression (makeArchive), and the property lists they are
// read from, piece by piece, so that pieces can be shared, replaced and taken away.

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/WebArchive/WebArchive.h"

#include <string>
#include <vector>

namespace qrv {

struct TestResource {
    std::string url;
    std::string text = "text";
    std::string mimeType = "text/html";
    std::string frameName = {};
    std::string encoding = "UTF-8";
};

struct TestArchive {
    TestResource main;
    std::vector<TestResource> resources = {};
    std::vector<TestArchive> frames = {};
};

/// Empty fields are left out, but for the data.
inline NSMutableDictionary resourceList(const TestResource& resource) {
    NSMutableDictionary list;
    const auto set = [&](const char16_t* key, const std::string& text) {
        if (!text.empty()) list.setObject_forKey(NSString::fromUTF8(text), NSString(key));
    };
    list.setObject_forKey(NSData(resource.text), NSString(u"WebResourceData"));
    set(u"WebResourceURL", resource.url);
    set(u"WebResourceMIMEType", resource.mimeType);
    set(u"WebResourceFrameName", resource.frameName);
    set(u"WebResourceTextEncodingName", resource.encoding);
    return list;
}

inline NSMutableDictionary archiveList(const TestResource& main,
                                       const std::vector<TestResource>& resources = {},
                                       const std::vector<NSMutableDictionary>& frames = {}) {
    std::vector<id> resourceLists;
    std::vector<id> frameLists;
    for (const TestResource& resource : resources) resourceLists.push_back(resourceList(resource).copy());
    for (const NSMutableDictionary& frame : frames) frameLists.push_back(frame.copy());
    NSMutableDictionary list;
    list.setObject_forKey(resourceList(main).copy(), NSString(u"WebMainResource"));
    list.setObject_forKey(NSArray(std::move(resourceLists)), NSString(u"WebSubresources"));
    list.setObject_forKey(NSArray(std::move(frameLists)), NSString(u"WebSubframeArchives"));
    return list;
}

/// What is one object in the list is one in the file.
inline NSData archiveFile(const id& list, NSPropertyListFormat format = NSPropertyListBinaryFormat_v1_0) {
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(list, format, nullptr);
}

inline WebArchive archiveOf(const NSMutableDictionary& list) {
    return WebArchive::initWithData(archiveFile(list.copy()));
}

inline NSMutableDictionary listOf(const TestArchive& archive) {
    std::vector<NSMutableDictionary> frames;
    for (const TestArchive& frame : archive.frames) frames.push_back(listOf(frame));
    return archiveList(archive.main, archive.resources, frames);
}

inline WebArchive makeArchive(const TestArchive& archive) {
    return archiveOf(listOf(archive));
}

inline WebResource resourceAt(const WebArchive& archive, std::size_t index) {
    return as<WebResource>(archive.subresources().objectAtIndex(index));
}

inline WebArchive frameAt(const WebArchive& archive, std::size_t index) {
    return as<WebArchive>(archive.subframeArchives().objectAtIndex(index));
}

} // namespace qrv
