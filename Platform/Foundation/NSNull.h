#pragma once

// The null object: stands for "none" where a collection cannot hold nil.

#include "Platform/Foundation/Object.h"

namespace qrv {

class QRV_EXPORT NSNull : public Handle<NSNull> {
public:
    using Handle::Handle;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + null
    /// The process's only null object, described as "<null>".
    static NSNull null();
};

} // namespace qrv
