#pragma once

// The null object: stands for "none" where a collection cannot hold nil.

#include "Platform/Foundation/Object.h"

namespace qrv {

class NSNull : public id {
public:
    using id::id;
    static const ClassInfo& classInfo();

    // + null
    /// The process's only null object, described as "<null>".
    static NSNull null();
};

} // namespace qrv
