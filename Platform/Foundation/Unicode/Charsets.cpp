// Text in the character sets of the web.

#include "Platform/Foundation/ASCII.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <utility>

namespace qrv::unicode {

namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;
using Pair = std::pair<std::string_view, const char*>;

/// Names that mean a larger set on the web than elsewhere.
constexpr std::array<Pair, 24> webMeanings{{
    {"ascii", "windows-1252"},     {"us-ascii", "windows-1252"},   {"iso-8859-1", "windows-1252"},
    {"iso8859-1", "windows-1252"}, {"iso88591", "windows-1252"},   {"iso_8859-1", "windows-1252"},
    {"latin1", "windows-1252"},    {"l1", "windows-1252"},         {"iso-8859-9", "windows-1254"},
    {"latin5", "windows-1254"},    {"iso-8859-11", "windows-874"}, {"tis-620", "windows-874"},
    {"gb2312", "gb18030"},         {"gb_2312-80", "gb18030"},      {"gbk", "gb18030"},
    {"x-gbk", "gb18030"},          {"euc-kr", "windows-949"},      {"ks_c_5601-1987", "windows-949"},
    {"korean", "windows-949"},     {"shift_jis", "windows-31j"},   {"shift-jis", "windows-31j"},
    {"sjis", "windows-31j"},       {"x-sjis", "windows-31j"},      {"utf-16", "utf-16le"},
}};

/// The byte-order marks that the web knows.
constexpr std::array<Pair, 3> signatures{
    {{"\xEF\xBB\xBF", "utf-8"}, {"\xFE\xFF", "utf-16be"}, {"\xFF\xFE", "utf-16le"}}};

/// A converter's name may contain options and even a file path, which a page must not choose.
bool isPlainName(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
               c == '_' || c == ':';
    });
}

/// Writes U+FFFD; the library itself writes U+001A for bytes of some sets.
void U_CALLCONV replace(const void*, UConverterToUnicodeArgs* arguments, const char*, int32_t,
                        UConverterCallbackReason reason, UErrorCode* status) {
    if (reason > UCNV_IRREGULAR) return;
    *status = U_ZERO_ERROR;
    constexpr char16_t replacement = 0xFFFD;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

Converter open(const std::string& charset) {
    if (charset.empty() || !isPlainName(charset)) return {nullptr, &ucnv_close};
    const std::string name = lowered(charset);
    const auto* meaning = std::find_if(webMeanings.begin(), webMeanings.end(),
                                       [&name](const Pair& pair) { return pair.first == name; });
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(meaning == webMeanings.end() ? name.c_str() : meaning->second, &status),
                        &ucnv_close);
    if (U_SUCCESS(status)) {
        ucnv_setToUCallBack(converter.get(), &replace, nullptr, nullptr, nullptr, &status);
    }
    return U_FAILURE(status) ? Converter(nullptr, &ucnv_close) : std::move(converter);
}

std::u16string convert(UConverter* converter, std::string_view bytes) {
    std::u16string text;
    const char* source = bytes.data();
    const char* const end = bytes.data() + bytes.size();
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        const std::size_t done = text.size();
        text.resize(done + static_cast<std::size_t>(end - source) + 16);
        char16_t* target = text.data() + done;
        status = U_ZERO_ERROR;
        ucnv_toUnicode(converter, &target, text.data() + text.size(), &source, end, nullptr, true, &status);
        text.resize(static_cast<std::size_t>(target - text.data()));
    }
    return text;
}

} // namespace

bool isCharset(const std::string& name) {
    return open(name) != nullptr;
}

std::u16string decodeWebText(std::string_view bytes, const std::string& charset) {
    for (const auto& [mark, name] : signatures) {
        if (!bytes.starts_with(mark)) continue;
        if (const Converter converter = open(name))
            return convert(converter.get(), bytes.substr(mark.size()));
    }
    if (const Converter converter = open(charset)) return convert(converter.get(), bytes);
    if (auto text = fromUTF8(bytes)) return *text;
    const Converter western = open("windows-1252");
    return western ? convert(western.get(), bytes) : fromUTF8Lossy(bytes);
}

} // namespace qrv::unicode
