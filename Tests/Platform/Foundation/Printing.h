#pragma once

// Lets a failed expectation show the values themselves.

#include "Platform/Foundation/NSString.h"

#include <concepts>
#include <ostream>

namespace qrv {

template <std::derived_from<id> T>
void PrintTo(const T& value, std::ostream* out) {
    *out << (value.isNil() ? "nil" : "\"" + value.description().utf8() + "\"");
}

inline void PrintTo(const NSRange& range, std::ostream* out) {
    *out << NSStringFromRange(range).utf8();
}

} // namespace qrv
