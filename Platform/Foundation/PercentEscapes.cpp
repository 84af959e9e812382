#include "Platform/Foundation/PercentEscapes.h"

#include "Platform/Foundation/ASCII.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

namespace qrv {

namespace {

/// The number of bytes of the UTF-8 sequence that starts with this byte.
std::size_t sequenceLength(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// The character at the start of valid UTF-8.
char32_t decodeOne(std::string_view sequence) {
    const auto lead = static_cast<unsigned char>(sequence[0]);
    if (sequence.size() == 1) return lead;
    char32_t character = lead & (0xFFU >> (sequence.size() + 1));
    for (const char c : sequence.substr(1))
        character = character << 6 | (static_cast<unsigned char>(c) & 0x3FU);
    return character;
}

void appendCharacter(std::u16string& text, char32_t character) {
    if (character < 0x10000) {
        text.push_back(static_cast<char16_t>(character));
    } else {
        text.push_back(static_cast<char16_t>(0xD7C0 + (character >> 10)));
        text.push_back(static_cast<char16_t>(0xDC00 + (character & 0x3FF)));
    }
}

template <class Visit>
void forEachCharacter(std::string_view utf8, const Visit& visit) {
    while (!utf8.empty()) {
        const std::string_view sequence = utf8.substr(0, sequenceLength(utf8[0]));
        visit(decodeOne(sequence), sequence);
        utf8.remove_prefix(sequence.size());
    }
}

std::unordered_set<char32_t> charactersOf(const NSString& text) {
    std::unordered_set<char32_t> characters;
    forEachCharacter(text.utf8(), [&](char32_t c, std::string_view) { characters.insert(c); });
    return characters;
}

void appendEscape(std::string& text, char c) {
    constexpr char digits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    text.append({'%', digits[byte >> 4], digits[byte & 15]});
}

/// The byte of the escape at the start of the text; nothing when none is there, or a malformed one.
template <class Char>
std::optional<char> escapeAtStart(std::basic_string_view<Char> text) {
    if (text.size() < 3 || text[0] != '%') return std::nullopt;
    const auto high = hexDigitValue(text[1]);
    const auto low = hexDigitValue(text[2]);
    return high && low ? std::optional(static_cast<char>(*high << 4 | *low)) : std::nullopt;
}

/// Decodes the consecutive escapes at the start of the text; nullopt for a malformed one.
std::optional<std::string> leadingEscapes(std::u16string_view text) {
    std::string bytes;
    for (; text.starts_with(u'%'); text.remove_prefix(3)) {
        const auto byte = escapeAtStart(text);
        if (!byte) return std::nullopt;
        bytes.push_back(*byte);
    }
    return bytes;
}

bool isLegalInURL(char32_t c) {
    constexpr std::u32string_view others = U"-_.!~*'();/?:@&=+$,";
    return isASCIIAlphanumeric(c) || others.find(c) != std::u32string_view::npos;
}

} // namespace

std::string percentEscaped(std::string_view bytes, std::string_view kept) {
    std::string result;
    result.reserve(bytes.size());
    for (const char c : bytes) {
        if (isASCIIAlphanumeric(c) || kept.find(c) != std::string_view::npos) {
            result.push_back(c);
        } else {
            appendEscape(result, c);
        }
    }
    return result;
}

std::string percentDecoded(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto byte = escapeAtStart(text);
        result.push_back(byte.value_or(text.front()));
        text.remove_prefix(byte ? 3 : 1);
    }
    return result;
}

NSString addPercentEscapes(const NSString& text, const std::function<bool(char32_t)>& stays) {
    const auto utf8 = unicode::toUTF8(text.view());
    if (text.isNil() || !utf8) return {};
    std::string result;
    forEachCharacter(*utf8, [&](char32_t character, std::string_view sequence) {
        if (stays(character)) {
            result.append(sequence);
            return;
        }
        for (const char c : sequence) appendEscape(result, c);
    });
    return NSString::fromUTF8(result);
}

NSString CFURLCreateStringByReplacingPercentEscapes(const NSString& text,
                                                    const NSString& charactersToLeaveEscaped) {
    if (charactersToLeaveEscaped.isNil()) return text;
    if (text.isNil()) return {};
    const std::unordered_set<char32_t> left = charactersOf(charactersToLeaveEscaped);
    std::u16string result;
    std::u16string_view rest = text.view();
    while (!rest.empty()) {
        const std::size_t plain = std::min(rest.find(u'%'), rest.size());
        result.append(rest.substr(0, plain));
        rest.remove_prefix(plain);
        const auto bytes = leadingEscapes(rest);
        if (!bytes || !unicode::fromUTF8(*bytes)) return {};
        forEachCharacter(*bytes, [&](char32_t character, std::string_view sequence) {
            const std::u16string_view escapes = rest.substr(0, sequence.size() * 3);
            rest.remove_prefix(escapes.size());
            if (left.contains(character)) {
                result.append(escapes);
            } else {
                appendCharacter(result, character);
            }
        });
    }
    return NSString(std::move(result));
}

NSString CFURLCreateStringByAddingPercentEscapes(const NSString& text, const NSString& toLeaveUnescaped,
                                                 const NSString& legalToBeEscaped) {
    const std::unordered_set<char32_t> left = charactersOf(toLeaveUnescaped);
    const std::unordered_set<char32_t> escaped = charactersOf(legalToBeEscaped);
    return addPercentEscapes(
        text, [&](char32_t c) { return left.contains(c) || (isLegalInURL(c) && !escaped.contains(c)); });
}

} // namespace qrv
