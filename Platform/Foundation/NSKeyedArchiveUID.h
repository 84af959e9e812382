#pragma once

// A reference between objects of a keyed archive: an index into the archive's list of objects. It exists in
// binary property lists only.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class NSKeyedArchiveUID : public Handle<NSKeyedArchiveUID> {
public:
    using Handle::Handle;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    static NSKeyedArchiveUID uidWithValue(unsigned long long value);

    /// 0 for nil.
    unsigned long long value() const;
};

} // namespace qrv
