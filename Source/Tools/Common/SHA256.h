#pragma once

// The only access to the library of hash functions.

#include <string>
#include <string_view>

namespace qrv {

/// The SHA-256 of the bytes, in 64 small hexadecimal digits.
std::string sha256(std::string_view bytes);

} // namespace qrv
