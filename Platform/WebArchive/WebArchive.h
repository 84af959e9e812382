#pragma once

// A saved page: its main resource, the resources it uses and the archives of its frames, nested.
//
// The file is a property list, binary or XML. Its root dictionary holds WebMainResource (required),
// WebSubresources and WebSubframeArchives (optional arrays). A resource is a dictionary with WebResourceData,
// WebResourceMIMEType, WebResourceURL, WebResourceTextEncodingName and WebResourceFrameName.

#include "Platform/Foundation/NSArray.h"
#include "Platform/WebArchive/WebResource.h"

namespace qrv {

class WebArchive : public id {
public:
    using id::id;
    WebArchive() = default;
    static const ClassInfo& classInfo();

    // - initWithData:
    /// nil when the data is no archive: no property list; a root that is no dictionary; a main resource that
    /// is missing, no dictionary, or without data or MIME type; an array field that is no array or has an
    /// element that is no dictionary. A malformed subresource is dropped, an invalid frame's archive is
    /// skipped. Left out are frames nested more than 64 deep, more than 10,000 frames and 250,000
    /// subresources, and what has more than 16 Mi characters of addresses, types and names together.
    static WebArchive initWithData(const NSData& data);

    // - mainResource
    WebResource mainResource() const;
    // - subresources
    /// Of WebResource, in the file's order.
    NSArray subresources() const;
    // - subframeArchives
    /// Of WebArchive, in the file's order, which is that of the frames' tags.
    NSArray subframeArchives() const;
};

} // namespace qrv
