#include "Source/Tools/webarchive/Extract/CharacterReferences.h"

#include "Platform/Foundation/Unicode.h"

#include <charconv>
#include <optional>

namespace qrv::webarchive {

namespace {

struct Found {
    std::string text;
    std::size_t length; // of the reference
};

std::string utf8Of(unsigned code) {
    if (code == 0 || code > 0x10FFFF) return "\uFFFD";
    std::u16string units;
    if (code > 0xFFFF) {
        units = {static_cast<char16_t>(0xD7C0 + (code >> 10)),
                 static_cast<char16_t>(0xDC00 + (code & 0x3FF))};
    } else {
        units = {static_cast<char16_t>(code)};
    }
    return unicode::toUTF8Lossy(units);
}

/// Of "#38;" or "#x26;", which may lack its end.
std::optional<Found> numberAt(std::string_view rest) {
    const bool isHexadecimal = rest.starts_with("#x") || rest.starts_with("#X");
    const char* const start = rest.data() + (isHexadecimal ? 2 : 1);
    const char* const last = rest.data() + rest.size();
    unsigned code = 0;
    const auto [end, error] = std::from_chars(start, last, code, isHexadecimal ? 16 : 10);
    if (end == start) return std::nullopt;
    const auto length = static_cast<std::size_t>(end - rest.data());
    return Found{utf8Of(error == std::errc() ? code : 0), length + (end != last && *end == ';' ? 1 : 0)};
}

/// The reference behind a "&".
std::optional<Found> referenceAt(std::string_view rest) {
    if (rest.starts_with('#')) return numberAt(rest);
    for (const auto& [name, text] :
         {std::pair("amp;", "&"), {"lt;", "<"}, {"gt;", ">"}, {"quot;", "\""}, {"apos;", "'"}}) {
        if (rest.starts_with(name)) return Found{text, std::string_view(name).size()};
    }
    return std::nullopt;
}

} // namespace

std::string withoutReferences(std::string_view value) {
    std::string result;
    while (!value.empty()) {
        const std::size_t plain = std::min(value.find('&'), value.size());
        result += value.substr(0, plain);
        value.remove_prefix(plain);
        if (value.empty()) break;
        const auto found = referenceAt(value.substr(1));
        result += found ? found->text : "&";
        value.remove_prefix(found ? 1 + found->length : 1);
    }
    return result;
}

std::string withReferences(std::string_view value) {
    std::string result;
    for (const char c : value) {
        if (c == '&') {
            result += "&amp;";
        } else if (c == '"') {
            result += "&quot;";
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace qrv::webarchive
