#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <unicode/ucnv.h>

namespace qrv::unicode {

namespace {

/// Encodings beyond the platform's own list have this bit and their number in the wider list.
constexpr unsigned long external(unsigned long number) {
    return 0x80000000UL | number;
}

struct Encoding {
    unsigned long value;
    const char* charset;
};

constexpr Encoding encodings[] = {
    {NSASCIIStringEncoding, "US-ASCII"},
    {NSJapaneseEUCStringEncoding, "EUC-JP"},
    {NSUTF8StringEncoding, "UTF-8"},
    {NSISOLatin1StringEncoding, "ISO-8859-1"},
    {NSShiftJISStringEncoding, "Shift_JIS"},
    {NSISOLatin2StringEncoding, "ISO-8859-2"},
    {NSUTF16StringEncoding, "UTF-16"},
    {NSWindowsCP1251StringEncoding, "windows-1251"},
    {NSWindowsCP1252StringEncoding, "windows-1252"},
    {NSWindowsCP1253StringEncoding, "windows-1253"},
    {NSWindowsCP1254StringEncoding, "windows-1254"},
    {NSWindowsCP1250StringEncoding, "windows-1250"},
    {NSISO2022JPStringEncoding, "ISO-2022-JP"},
    {NSMacOSRomanStringEncoding, "macintosh"},
    {NSUTF16BigEndianStringEncoding, "UTF-16BE"},
    {NSUTF16LittleEndianStringEncoding, "UTF-16LE"},
    {NSUTF32StringEncoding, "UTF-32"},
    {NSUTF32BigEndianStringEncoding, "UTF-32BE"},
    {NSUTF32LittleEndianStringEncoding, "UTF-32LE"},
    {external(0x0007), "x-mac-cyrillic"},
    {external(0x001D), "x-mac-centraleurroman"},
    {external(0x0203), "ISO-8859-3"},
    {external(0x0204), "ISO-8859-4"},
    {external(0x0205), "ISO-8859-5"},
    {external(0x0206), "ISO-8859-6"},
    {external(0x0207), "ISO-8859-7"},
    {external(0x0208), "ISO-8859-8"},
    {external(0x0209), "ISO-8859-9"},
    {external(0x020A), "ISO-8859-10"},
    {external(0x020B), "TIS-620"},
    {external(0x020D), "ISO-8859-13"},
    {external(0x020E), "ISO-8859-14"},
    {external(0x020F), "ISO-8859-15"},
    {external(0x0400), "IBM437"},
    {external(0x0410), "IBM850"},
    {external(0x0412), "IBM852"},
    {external(0x0419), "IBM866"},
    {external(0x041D), "windows-874"},
    {external(0x0422), "windows-949"},
    {external(0x0505), "windows-1255"},
    {external(0x0506), "windows-1256"},
    {external(0x0507), "windows-1257"},
    {external(0x0508), "windows-1258"},
    {external(0x0631), "GBK"},
    {external(0x0632), "GB18030"},
    {external(0x0830), "ISO-2022-CN"},
    {external(0x0840), "ISO-2022-KR"},
    {external(0x0930), "GB2312"},
    {external(0x0931), "EUC-TW"},
    {external(0x0940), "EUC-KR"},
    {external(0x0A02), "KOI8-R"},
    {external(0x0A03), "Big5"},
    {external(0x0A05), "HZ-GB-2312"},
    {external(0x0A06), "Big5-HKSCS"},
    {external(0x0A08), "KOI8-U"},
    {external(0x04000100), "UTF-7"},
};

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

using Converter = std::unique_ptr<UConverter, CloseConverter>;

/// Stops at every character that the encoding lacks. The library's own function passes over those that are
/// not shown, such as the zero-width space, which would be lost.
void stopAtCharacter(const void*, UConverterFromUnicodeArgs*, const UChar*, int32_t, UChar32,
                     UConverterCallbackReason, UErrorCode*) {}

/// Null for an unknown encoding. Stops at what it cannot convert, without substitutions.
Converter openConverter(unsigned long encoding) {
    const auto* found = std::find_if(std::begin(encodings), std::end(encodings),
                                     [&](const Encoding& e) { return e.value == encoding; });
    if (found == std::end(encodings)) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(found->charset, &status));
    if (!converter) return nullptr;
    ucnv_setFallback(converter.get(), false);
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter.get(), stopAtCharacter, nullptr, nullptr, nullptr, &status);
    return converter;
}

std::string nonLossyASCII(std::u16string_view text) {
    std::string bytes;
    for (const char16_t c : text) {
        if (c == u'\\') {
            bytes.append("\\\\");
        } else if (c < 0x80) {
            bytes.push_back(static_cast<char>(c));
        } else {
            std::array<char, 8> escape{};
            const unsigned code = c;
            const int length = c < 0x100 ? std::snprintf(escape.data(), escape.size(), "\\%03o", code)
                                         : std::snprintf(escape.data(), escape.size(), "\\u%04x", code);
            bytes.append(escape.data(), static_cast<std::size_t>(length));
        }
    }
    return bytes;
}

/// Parses exactly `count` digits at the start of the text; nullopt above the maximum.
std::optional<char16_t> leadingNumber(std::string_view text, std::size_t count, int base, unsigned maximum) {
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + std::min(count, text.size()), value, base);
    if (error != std::errc() || end != text.data() + count || value > maximum) return std::nullopt;
    return static_cast<char16_t>(value);
}

std::optional<std::u16string> fromNonLossyASCII(std::string_view bytes) {
    std::u16string text;
    while (!bytes.empty()) {
        if (static_cast<unsigned char>(bytes[0]) >= 0x80) return std::nullopt;
        std::optional<char16_t> unit = static_cast<char16_t>(bytes[0]);
        std::size_t length = 1;
        if (bytes[0] == '\\') {
            if (bytes.starts_with("\\\\")) {
                length = 2;
            } else if (bytes.starts_with("\\u")) {
                unit = leadingNumber(bytes.substr(2), 4, 16, 0xFFFF);
                length = 6;
            } else {
                unit = leadingNumber(bytes.substr(1), 3, 8, 0xFF);
                length = 4;
            }
        }
        if (!unit) return std::nullopt;
        text.push_back(*unit);
        bytes.remove_prefix(length);
    }
    return text;
}

/// Determines the byte order by the mark at the start, which is removed; big-endian if there is none.
template <unsigned long big, unsigned long little>
std::optional<std::u16string> decodeMarked(std::string_view bytes, std::string_view bigMark,
                                           std::string_view littleMark) {
    if (bytes.starts_with(bigMark)) return decode(bytes.substr(bigMark.size()), big);
    if (bytes.starts_with(littleMark)) return decode(bytes.substr(littleMark.size()), little);
    return decode(bytes, big);
}

constexpr std::string_view utf16BigMark("\xFE\xFF", 2);
constexpr std::string_view utf16LittleMark("\xFF\xFE", 2);
constexpr std::string_view utf32BigMark("\0\0\xFE\xFF", 4);
constexpr std::string_view utf32LittleMark("\xFF\xFE\0\0", 4);

/// Encodes in little-endian order, with a byte-order mark.
std::optional<std::string> encodeMarked(std::u16string_view text, unsigned long little,
                                        std::string_view mark) {
    std::optional<std::string> bytes = encode(text, little);
    if (bytes) bytes->insert(0, mark);
    return bytes;
}

} // namespace

std::optional<std::u16string> decode(std::string_view bytes, unsigned long encoding) {
    switch (encoding) {
    case NSUTF8StringEncoding:
        return fromUTF8(bytes);
    case NSNonLossyASCIIStringEncoding:
        return fromNonLossyASCII(bytes);
    case NSUTF16StringEncoding:
        return decodeMarked<NSUTF16BigEndianStringEncoding, NSUTF16LittleEndianStringEncoding>(
            bytes, utf16BigMark, utf16LittleMark);
    case NSUTF32StringEncoding:
        return decodeMarked<NSUTF32BigEndianStringEncoding, NSUTF32LittleEndianStringEncoding>(
            bytes, utf32BigMark, utf32LittleMark);
    default:
        break;
    }
    const Converter converter = openConverter(encoding);
    if (!converter) return std::nullopt;
    std::u16string text(bytes.size() + 1, u'\0'); // enough for nearly every encoding
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = ucnv_toUChars(converter.get(), text.data(), static_cast<int32_t>(text.size()),
                                             bytes.data(), static_cast<int32_t>(bytes.size()), &status);
        const bool tooLong = status == U_BUFFER_OVERFLOW_ERROR;
        if (U_FAILURE(status) && !tooLong) return std::nullopt;
        text.resize(static_cast<std::size_t>(length));
        if (!tooLong) return text;
    }
}

std::optional<std::string> encode(std::u16string_view text, unsigned long encoding) {
    switch (encoding) {
    case NSUTF8StringEncoding:
        return toUTF8(text);
    case NSNonLossyASCIIStringEncoding:
        return nonLossyASCII(text);
    case NSUTF16StringEncoding:
        return encodeMarked(text, NSUTF16LittleEndianStringEncoding, utf16LittleMark);
    case NSUTF32StringEncoding:
        return encodeMarked(text, NSUTF32LittleEndianStringEncoding, utf32LittleMark);
    default:
        break;
    }
    const Converter converter = openConverter(encoding);
    if (!converter) return std::nullopt;
    std::string bytes(text.size() * 2 + 16, '\0');
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length =
            ucnv_fromUChars(converter.get(), bytes.data(), static_cast<int32_t>(bytes.size()), text.data(),
                            static_cast<int32_t>(text.size()), &status);
        const bool tooLong = status == U_BUFFER_OVERFLOW_ERROR;
        if (U_FAILURE(status) && !tooLong) return std::nullopt;
        bytes.resize(static_cast<std::size_t>(length));
        if (!tooLong) return bytes;
    }
}

std::optional<unsigned long> encodingOfCharset(const std::string& name) {
    const auto converterOf = [](const char* charset) {
        UErrorCode status = U_ZERO_ERROR;
        const char* found = ucnv_getAlias(charset, 0, &status);
        return found ? std::string_view(found) : std::string_view();
    };
    const std::string_view wanted = converterOf(name.c_str());
    if (wanted.empty()) return std::nullopt;
    const auto* found = std::find_if(std::begin(encodings), std::end(encodings),
                                     [&](const Encoding& e) { return converterOf(e.charset) == wanted; });
    return found == std::end(encodings) ? std::nullopt : std::optional(found->value);
}

} // namespace qrv::unicode
