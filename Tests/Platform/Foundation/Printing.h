#pragma once

// Lets a failed expectation and the name of a case show the values themselves.

#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSString.h"

#include <concepts>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace qrv {

template <std::derived_from<id> T>
void PrintTo(const T& value, std::ostream* out) {
    *out << (value.isNil() ? "nil" : "\"" + value.description().utf8() + "\"");
}

inline void PrintTo(const NSRange& range, std::ostream* out) {
    *out << NSStringFromRange(range).utf8();
}

inline void PrintTo(const NSOperatingSystemVersion& version, std::ostream* out) {
    *out << version.majorVersion << '.' << version.minorVersion << '.' << version.patchVersion;
}

/// A text of a table, on one line.
inline std::string printed(const char16_t* text) {
    return text ? testing::PrintToString(std::u16string(text)) : "nil";
}

} // namespace qrv
