#include "Platform/Engine/PDF/PDFGlyphTexts.h"

#include "Platform/Foundation/Unicode.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <string_view>
#include <vector>

namespace qrv::engine {

namespace {

/// The longest range of glyphs: only the last byte of its codes may differ.
constexpr unsigned longestRange = 256;

bool isUnusual(char16_t c) {
    return (c >= u'\u2F00' && c <= u'\u2FD5') || c == u'\u2E9F' || c == u'\u2EF3' ||
           (c >= u'\uF900' && c <= u'\uFDFF') || (c >= u'\uFE10' && c <= u'\uFE19') ||
           (c >= u'\uFE30' && c <= u'\uFE48') || (c >= u'\uFE70' && c <= u'\uFEFC');
}

std::u16string usual(const std::u16string& text) {
    std::u16string result;
    for (const char16_t c : text) {
        if (isUnusual(c)) {
            result += unicode::compatibilityForm(std::u16string(1, c));
        } else {
            result += c;
        }
    }
    return result;
}

/// Decodes hexadecimal digits as UTF-16.
std::optional<std::u16string> fromHex(std::string_view digits) {
    std::u16string text;
    for (; digits.size() >= 4; digits.remove_prefix(4)) {
        unsigned value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + 4, value, 16);
        if (error != std::errc() || end != digits.data() + 4) return std::nullopt;
        text += static_cast<char16_t>(value);
    }
    return digits.empty() && !text.empty() ? std::optional(text) : std::nullopt;
}

std::string toHex(std::u16string_view text) {
    std::string result = "<";
    for (const char16_t c : text) {
        std::array<char, 5> digits{};
        std::snprintf(digits.data(), digits.size(), "%04X", static_cast<unsigned>(c));
        result += digits.data();
    }
    return result + ">";
}

/// Returns the digits of the strings of a line that contains nothing else: "<0041> <0062>".
std::vector<std::string> stringsIn(std::string_view line) {
    std::vector<std::string> strings;
    while (!line.empty()) {
        const std::size_t end = line.find('>');
        if (line.front() != '<' || end == std::string_view::npos) return {};
        strings.emplace_back(line.substr(1, end - 1));
        line.remove_prefix(end + 1);
        line.remove_prefix(std::min(line.find_first_not_of(" \r"), line.size()));
    }
    return strings;
}

/// Corrects "<glyph> <text>".
std::string correctedChar(const std::string& line) {
    const std::vector<std::string> strings = stringsIn(line);
    const auto text = strings.size() == 2 ? fromHex(strings[1]) : std::nullopt;
    if (!text || usual(*text) == *text) return line;
    return "<" + strings[0] + "> " + toHex(usual(*text));
}

/// Returns the number of glyphs in a range; 0 if it is invalid.
unsigned lengthOfRange(const std::string& first, const std::string& last) {
    const auto number = [](const std::string& digits) {
        unsigned value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        return error == std::errc() && end == digits.data() + digits.size() ? std::optional(value)
                                                                            : std::nullopt;
    };
    const auto from = number(first);
    const auto to = number(last);
    return from && to && *from <= *to && *to - *from < longestRange ? *to - *from + 1 : 0;
}

/// Corrects "<first glyph> <last glyph> <text of the first>", in which the last unit of the text counts up.
std::string correctedRange(const std::string& line) {
    const std::vector<std::string> strings = stringsIn(line);
    auto text = strings.size() == 3 ? fromHex(strings[2]) : std::nullopt;
    if (!text) return line;
    std::string list;
    bool isChanged = false;
    for (unsigned rest = lengthOfRange(strings[0], strings[1]); rest > 0; --rest, ++text->back()) {
        const std::u16string corrected = usual(*text);
        isChanged = isChanged || corrected != *text;
        list += toHex(corrected);
    }
    return isChanged ? "<" + strings[0] + "> <" + strings[1] + "> [" + list + "]" : line;
}

} // namespace

std::optional<std::string> withUsualCharacters(const std::string& mapping) {
    std::string result;
    std::string section; // the operator that ends it
    bool isChanged = false;
    for (std::size_t start = 0; start < mapping.size();) {
        const std::size_t end = std::min(mapping.find('\n', start), mapping.size());
        const std::string line = mapping.substr(start, end - start);
        std::string corrected = line;
        if (line.ends_with("beginbfchar") || line.ends_with("beginbfrange")) {
            section = line.ends_with("char") ? "endbfchar" : "endbfrange";
        } else if (line == section) {
            section.clear();
        } else if (!section.empty()) {
            corrected = section == "endbfchar" ? correctedChar(line) : correctedRange(line);
        }
        isChanged = isChanged || corrected != line;
        result += corrected + (end < mapping.size() ? "\n" : "");
        start = end + 1;
    }
    return isChanged ? std::optional(result) : std::nullopt;
}

void correctGlyphTexts(QPDF& document) {
    for (QPDFObjectHandle font : document.getAllObjects()) {
        if (!font.isDictionaryOfType("/Font")) continue;
        QPDFObjectHandle texts = font.getKey("/ToUnicode");
        if (!texts.isStream()) continue;
        const std::shared_ptr<Buffer> data = texts.getStreamData();
        const auto* bytes = data->getBuffer();
        const auto corrected = withUsualCharacters(std::string(bytes, bytes + data->getSize()));
        if (!corrected) continue;
        texts.replaceStreamData(*corrected, QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    }
}

} // namespace qrv::engine
