#pragma once

// A saved page: its main resource, its subresources and, nested, the archives of its frames.
//
// The file is a property list, binary or XML. Its root dictionary holds WebMainResource (required),
// WebSubresources and WebSubframeArchives (optional arrays). A resource is a dictionary with WebResourceData,
// WebResourceMIMEType, WebResourceURL, WebResourceTextEncodingName and WebResourceFrameName.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/WebArchive/WebArchiveProblems.h"
#include "Platform/WebArchive/WebResource.h"

namespace qrv {

class WebArchive : public Handle<WebArchive> {
public:
    using Handle::Handle;
    WebArchive() = default;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // - initWithData:
    /// Returns nil if the data is no archive: no property list; a root that is no dictionary; a main resource
    /// that is missing, no dictionary, or without data or MIME type; an array field that is no array or has
    /// an element that is no dictionary. A malformed subresource is dropped, an invalid frame archive is
    /// skipped. Dropped as well are frames nested more than 64 deep, frames beyond 10,000, subresources
    /// beyond 250,000, and resources beyond a total of 16 Mi characters of addresses, types and names. All
    /// of that is added to `problems`, unless it is null; a nil result has at least one, and all of its
    /// problems are losses of the archive, which no other result has.
    static WebArchive initWithData(const NSData& data, WebArchiveProblems* problems = nullptr);
    // - initWithMainResource:subresources:subframeArchives:
    /// The arrays hold WebResource and WebArchive values; nil stands for an empty one. Returns nil if the
    /// main resource is nil or an element is of another kind. Subresources without an address are dropped, as
    /// they are in reading.
    static WebArchive initWithMainResource_subresources_subframeArchives(const WebResource& mainResource,
                                                                         const NSArray& subresources,
                                                                         const NSArray& subframeArchives);

    // - mainResource
    WebResource mainResource() const;
    // - subresources
    /// WebResource values, in the file's order.
    NSArray subresources() const;
    // - subframeArchives
    /// WebArchive values, in the file's order, which is that of the frames' tags.
    NSArray subframeArchives() const;

    // - data
    /// The file: a binary property list. Fields that are nil and arrays that are empty are left out; whoever
    /// reads it gets the same values, within the limits above. nil for nil.
    NSData data() const;
    /// The same as a property list of this format; nil also if it cannot represent a text.
    NSData dataInFormat(NSPropertyListFormat format) const;
};

} // namespace qrv
