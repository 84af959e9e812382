#pragma once

// The only access to the library of hash functions.

#include <optional>
#include <string>
#include <string_view>

namespace qrv {

/// The SHA-256 of the bytes, in 64 small hexadecimal digits.
std::string sha256(std::string_view bytes);

/// That of a regular file, which may be larger than the memory. Nothing, with errno set, if it is none or
/// cannot be read; nobody is waited for.
std::optional<std::string> sha256OfFile(const std::string& path);

} // namespace qrv
