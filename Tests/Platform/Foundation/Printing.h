#pragma once

// Lets a failed expectation show the values themselves.

#include "Platform/Foundation/NSString.h"

#include <ostream>

namespace qrv {

inline void PrintTo(const id& value, std::ostream* out) {
    *out << (value.isNil() ? "nil" : "\"" + value.description().utf8() + "\"");
}

inline void PrintTo(const NSRange& range, std::ostream* out) {
    *out << NSStringFromRange(range).utf8();
}

} // namespace qrv
