#pragma once

// The one door to the Unicode library: conversions, boundaries, comparison, dates. Plain standard types, so
// that the classes above stay free of it.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qrv::unicode {

/// nullopt when the bytes are not valid UTF-8.
std::optional<std::u16string> fromUTF8(std::string_view bytes);
/// Every invalid sequence becomes U+FFFD.
std::u16string fromUTF8Lossy(std::string_view bytes);
/// nullopt when the text holds an unpaired surrogate.
std::optional<std::string> toUTF8(std::u16string_view text);
/// An unpaired surrogate becomes U+FFFD.
std::string toUTF8Lossy(std::u16string_view text);

} // namespace qrv::unicode
