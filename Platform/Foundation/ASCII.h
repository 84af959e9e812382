#pragma once

// ASCII letters and digits, independent of the locale, for any character type.

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

/// Returns 0 to 15, or nothing if it is no hexadecimal digit.
template <class Char>
constexpr std::optional<unsigned> hexDigitValue(Char c) {
    if (isASCIIDigit(c)) return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
    return std::nullopt;
}

/// Converts ASCII capitals to small letters.
inline std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return result;
}

} // namespace qrv
