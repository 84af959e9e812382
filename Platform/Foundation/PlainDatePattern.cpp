#include "Platform/Foundation/PlainDatePattern.h"

#include "Platform/Foundation/ASCII.h"

#include <array>

namespace qrv {

namespace {

constexpr std::array<std::u16string_view, 12> monthNames{u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                                         u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};

void appendDigits(std::u16string& text, int number, int digits) {
    char16_t block[4];
    for (int at = digits; at-- > 0; number /= 10) block[at] = static_cast<char16_t>(u'0' + number % 10);
    text.append(block, static_cast<std::size_t>(digits));
}

/// Quoted text, from its opening quote on: a doubled quote stands for one.
std::u16string takeQuoted(std::u16string_view& rest) {
    std::u16string text;
    rest.remove_prefix(1);
    if (rest.starts_with(u'\'')) {
        rest.remove_prefix(1);
        return u"'";
    }
    while (!rest.empty()) {
        const char16_t c = rest.front();
        rest.remove_prefix(1);
        if (c == u'\'') {
            if (!rest.starts_with(u'\'')) break;
            rest.remove_prefix(1);
        }
        text.push_back(c);
    }
    return text;
}

} // namespace

std::optional<PlainDatePattern::Field> PlainDatePattern::field(std::u16string_view letters) {
    constexpr std::pair<std::u16string_view, Field> fields[] = {
        {u"yyyy", Field::year}, {u"MM", Field::month},       {u"MMM", Field::monthName},
        {u"dd", Field::day},    {u"HH", Field::hour},        {u"mm", Field::minute},
        {u"ss", Field::second}, {u"SSS", Field::millisecond}};
    for (const auto& [name, field] : fields)
        if (name == letters) return field;
    return std::nullopt;
}

std::optional<PlainDatePattern> PlainDatePattern::parse(std::u16string_view pattern) {
    PlainDatePattern plain;
    for (std::u16string_view rest = pattern; !rest.empty();) {
        const char16_t first = rest.front();
        if (isASCIILetter(first)) {
            const std::u16string_view letters =
                rest.substr(0, std::min(rest.find_first_not_of(first), rest.size()));
            const auto known = field(letters);
            if (!known) return std::nullopt;
            plain.pieces_.push_back({*known, {}});
            rest.remove_prefix(letters.size());
        } else if (first == u'\'') {
            plain.pieces_.push_back({Field::text, takeQuoted(rest)});
        } else {
            plain.pieces_.push_back({Field::text, std::u16string(1, first)});
            rest.remove_prefix(1);
        }
    }
    return plain;
}

bool PlainDatePattern::canFormat(const LocalTime& time) {
    constexpr int tmYear = 1900; // what tm_year counts from
    return time.parts.tm_year >= 1600 - tmYear && time.parts.tm_year <= 9999 - tmYear &&
           time.parts.tm_mday > 0;
}

std::u16string PlainDatePattern::format(const LocalTime& time) const {
    const std::tm& parts = time.parts;
    std::u16string text;
    for (const Piece& piece : pieces_) {
        switch (piece.field) {
        case Field::text:
            text.append(piece.text);
            break;
        case Field::year:
            appendDigits(text, parts.tm_year + 1900, 4);
            break;
        case Field::month:
            appendDigits(text, parts.tm_mon + 1, 2);
            break;
        case Field::monthName:
            text.append(monthNames[static_cast<std::size_t>(parts.tm_mon)]);
            break;
        case Field::day:
            appendDigits(text, parts.tm_mday, 2);
            break;
        case Field::hour:
            appendDigits(text, parts.tm_hour, 2);
            break;
        case Field::minute:
            appendDigits(text, parts.tm_min, 2);
            break;
        case Field::second:
            appendDigits(text, parts.tm_sec, 2);
            break;
        case Field::millisecond:
            appendDigits(text, time.milliseconds, 3);
            break;
        }
    }
    return text;
}

} // namespace qrv
