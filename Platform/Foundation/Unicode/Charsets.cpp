// Text in the character sets of the web.

#include "Platform/Foundation/Unicode.h"

#include <unicode/ucnv.h>

#include <memory>

namespace qrv::unicode {

namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

Converter open(const char* charset) {
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(charset, &status), &ucnv_close);
    return U_FAILURE(status) ? Converter(nullptr, &ucnv_close) : std::move(converter);
}

std::u16string convert(UConverter* converter, std::string_view bytes) {
    std::u16string text(bytes.size() * 2 + 1, u'\0');
    char16_t* target = text.data();
    const char* source = bytes.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(converter, &target, text.data() + text.size(), &source, bytes.data() + bytes.size(),
                   nullptr, true, &status);
    text.resize(static_cast<std::size_t>(target - text.data()));
    return text;
}

} // namespace

std::u16string decodeWebText(std::string_view bytes, const std::string& charset) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t signatureLength = 0;
    const char* signature = ucnv_detectUnicodeSignature(
        bytes.data(), static_cast<int32_t>(std::min<std::size_t>(bytes.size(), 4)), &signatureLength,
        &status);
    if (U_SUCCESS(status) && signature) {
        if (const Converter converter = open(signature)) {
            return convert(converter.get(), bytes.substr(static_cast<std::size_t>(signatureLength)));
        }
    }
    if (!charset.empty()) {
        if (const Converter converter = open(charset.c_str())) return convert(converter.get(), bytes);
    }
    if (auto text = fromUTF8(bytes)) return *text;
    const Converter western = open("windows-1252");
    return western ? convert(western.get(), bytes) : fromUTF8Lossy(bytes);
}

} // namespace qrv::unicode
