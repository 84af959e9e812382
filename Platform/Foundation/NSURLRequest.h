#pragma once

// A request to load something: here, just its address.

#include "Platform/Foundation/NSURL.h"

namespace qrv {

class NSURLRequest : public Handle<NSURLRequest> {
public:
    using Handle::Handle;
    NSURLRequest() = default;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + requestWithURL:
    static NSURLRequest requestWithURL(const NSURL& url);

    // - URL
    /// nil if the request has none.
    NSURL URL() const;
};

} // namespace qrv
