#include "Platform/Foundation/Unicode.h"

#include <unicode/ustring.h>

namespace qrv::unicode {

namespace {

/// The library counts in 32-bit integers; longer texts are refused rather than truncated.
bool fits(std::size_t length) {
    return length <= static_cast<std::size_t>(INT32_MAX / 4);
}

std::optional<std::u16string> decode(std::string_view bytes, UChar32 substitute) {
    if (!fits(bytes.size())) return std::nullopt;
    std::u16string text(bytes.size(), u'\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(text.data(), static_cast<int32_t>(text.size()), &length, bytes.data(),
                         static_cast<int32_t>(bytes.size()), substitute, nullptr, &status);
    if (U_FAILURE(status)) return std::nullopt;
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::optional<std::string> encode(std::u16string_view text, UChar32 substitute) {
    if (!fits(text.size())) return std::nullopt;
    std::string bytes(text.size() * 3, '\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(bytes.data(), static_cast<int32_t>(bytes.size()), &length, text.data(),
                       static_cast<int32_t>(text.size()), substitute, nullptr, &status);
    if (U_FAILURE(status)) return std::nullopt;
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

constexpr UChar32 noSubstitute = U_SENTINEL;
constexpr UChar32 replacementCharacter = 0xFFFD;

} // namespace

std::optional<std::u16string> fromUTF8(std::string_view bytes) {
    return decode(bytes, noSubstitute);
}

std::u16string fromUTF8Lossy(std::string_view bytes) {
    return decode(bytes, replacementCharacter).value_or(std::u16string());
}

std::optional<std::string> toUTF8(std::u16string_view text) {
    return encode(text, noSubstitute);
}

std::string toUTF8Lossy(std::u16string_view text) {
    return encode(text, replacementCharacter).value_or(std::string());
}

} // namespace qrv::unicode
