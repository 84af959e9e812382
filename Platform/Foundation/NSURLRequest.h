#pragma once

// What is asked for when something is loaded: here, its address.

#include "Platform/Foundation/NSURL.h"

namespace qrv {

class NSURLRequest : public id {
public:
    using id::id;
    NSURLRequest() = default;
    static const ClassInfo& classInfo();

    // + requestWithURL:
    static NSURLRequest requestWithURL(const NSURL& url);

    // - URL
    /// nil when the request has none.
    NSURL URL() const;
};

} // namespace qrv
