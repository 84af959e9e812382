#include "Platform/Foundation/Unicode.h"

#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace qrv::unicode {

namespace {

/// The library counts in 32-bit integers; longer texts are refused rather than truncated.
bool fits(std::size_t length) {
    return length <= static_cast<std::size_t>(INT32_MAX / 4);
}

/// Most texts are ASCII, which is the same in all forms.
template <class Char>
bool isASCII(std::basic_string_view<Char> text) {
    unsigned all = 0;
    for (const Char c : text) all |= static_cast<std::uint16_t>(c);
    return all < 0x80;
}

std::optional<std::u16string> decode(std::string_view bytes, UChar32 substitute) {
    if (!fits(bytes.size())) return std::nullopt;
    if (isASCII(bytes)) return std::u16string(bytes.begin(), bytes.end());
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
    if (isASCII(text)) return std::string(text.begin(), text.end());
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

/// An undecodable byte, which is never ASCII, is added to this.
constexpr char16_t byteEscape = 0xDC00;

bool standsForByte(char16_t unit) {
    return unit >= byteEscape + 0x80 && unit <= byteEscape + 0xFF;
}

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

std::u16string fromFileName(std::string_view bytes) {
    std::u16string text;
    std::size_t written = 0;
    for (std::size_t next = 0; next < bytes.size();) {
        const std::size_t start = next;
        UChar32 c = 0;
        U8_NEXT(bytes.data(), next, bytes.size(), c); // NOLINT(bugprone-inc-dec-in-conditions): in the macro
        if (c >= 0) continue;
        text += fromUTF8Lossy(bytes.substr(written, start - written));
        for (const char byte : bytes.substr(start, next - start)) {
            text.push_back(static_cast<char16_t>(byteEscape + static_cast<unsigned char>(byte)));
        }
        written = next;
    }
    return text + fromUTF8Lossy(bytes.substr(written));
}

std::optional<std::string> toFileName(std::u16string_view text) {
    std::string bytes;
    std::size_t written = 0;
    const auto writeUpTo = [&](std::size_t end) {
        const auto valid = toUTF8(text.substr(written, end - written));
        if (valid) bytes += *valid;
        return valid.has_value();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPaired = i > 0 && U16_IS_LEAD(text[i - 1]);
        if (isPaired || !standsForByte(text[i])) continue;
        if (!writeUpTo(i)) return std::nullopt;
        bytes.push_back(static_cast<char>(text[i] - byteEscape));
        written = i + 1;
    }
    if (!writeUpTo(text.size())) return std::nullopt;
    return bytes;
}

} // namespace qrv::unicode
