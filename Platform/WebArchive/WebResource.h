#pragma once

// A resource as an archive stores it: bytes with their address, type, encoding and frame name.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSURL.h"

namespace qrv {

class WebResource : public Handle<WebResource> {
public:
    using Handle::Handle;
    WebResource() = default;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // - initWithData:URL:MIMEType:textEncodingName:frameName:
    /// Returns nil if the data or the MIME type is nil. The others may be nil.
    static WebResource initWithData_URL_MIMEType_textEncodingName_frameName(const NSData& data,
                                                                            const NSURL& url,
                                                                            const NSString& mimeType,
                                                                            const NSString& textEncodingName,
                                                                            const NSString& frameName);

    // - data
    NSData data() const;
    // - URL
    NSURL URL() const;
    // - MIMEType
    NSString MIMEType() const;
    // - textEncodingName
    NSString textEncodingName() const;
    // - frameName
    NSString frameName() const;
};

} // namespace qrv
