#pragma once

// Web archives made in memory, as the property lists that a browser would have written.

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/WebKit/WebArchive.h"

#include <string>
#include <string_view>
#include <vector>

namespace qrv {

struct TestResource {
    std::string url;
    std::string text;
    std::string mimeType = "text/html";
    std::string frameName = {};
    std::string encoding = "UTF-8";
};

struct TestArchive {
    TestResource main;
    std::vector<TestResource> resources = {};
    std::vector<TestArchive> frames = {};
};

inline NSDictionary propertyListOf(const TestResource& resource) {
    NSMutableDictionary dictionary;
    const auto set = [&](const char16_t* key, const std::string& text) {
        if (!text.empty()) dictionary.setObject_forKey(NSString::fromUTF8(text), NSString(key));
    };
    dictionary.setObject_forKey(NSData(resource.text), NSString(u"WebResourceData"));
    set(u"WebResourceURL", resource.url);
    set(u"WebResourceMIMEType", resource.mimeType);
    set(u"WebResourceFrameName", resource.frameName);
    set(u"WebResourceTextEncodingName", resource.encoding);
    return dictionary;
}

inline NSDictionary propertyListOf(const TestArchive& archive) {
    std::vector<id> resources;
    std::vector<id> frames;
    for (const TestResource& resource : archive.resources) resources.push_back(propertyListOf(resource));
    for (const TestArchive& frame : archive.frames) frames.push_back(propertyListOf(frame));
    return {{NSString(u"WebMainResource"), propertyListOf(archive.main)},
            {NSString(u"WebSubresources"), NSArray(std::move(resources))},
            {NSString(u"WebSubframeArchives"), NSArray(std::move(frames))}};
}

inline WebArchive makeArchive(const TestArchive& archive) {
    return WebArchive::initWithData(NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        propertyListOf(archive), NSPropertyListBinaryFormat_v1_0, nullptr));
}

} // namespace qrv
