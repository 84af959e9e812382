#pragma once

// Letters and digits of ASCII, whatever the locale and whatever kind of character they are given as.

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace qrv {

template <class Char>
constexpr bool isASCIILetter(Char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

template <class Char>
constexpr bool isASCIIDigit(Char c) {
    return c >= '0' && c <= '9';
}

template <class Char>
constexpr bool isASCIIAlphanumeric(Char c) {
    return isASCIILetter(c) || isASCIIDigit(c);
}

/// From 0 to 15; nothing for what is no hexadecimal digit.
template <class Char>
constexpr std::optional<unsigned> hexDigitValue(Char c) {
    if (isASCIIDigit(c)) return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
    return std::nullopt;
}

/// Capital letters become small ones; nothing else changes.
inline std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return result;
}

} // namespace qrv
