#include "Platform/Foundation/FormatNumbers.h"

#include "Platform/Foundation/DecimalPoint.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <optional>

namespace qrv {

namespace {

bool isPlain(const FormatConversion& c) {
    return !c.width && !c.hasPlus && !c.hasBlank && !c.isAlternative;
}

long long signExtended(unsigned long long bits, unsigned bytes) {
    const unsigned shift = 64 - 8 * bytes;
    return static_cast<long long>(bits << shift) >> shift;
}

/// The conversion for printf, with this length modifier.
std::string printfFormat(const FormatConversion& c, const char* length, char letter) {
    std::string text = "%";
    if (c.isLeft) text += '-';
    if (c.hasPlus) text += '+';
    if (c.hasBlank) text += ' ';
    if (c.isAlternative) text += '#';
    if (c.hasZeros) text += '0';
    if (c.width) text += std::to_string(*c.width);
    if (c.precision) text += "." + std::to_string(*c.precision);
    return text + length + letter;
}

template <class T>
void print(FormatOutput& out, const std::string& printfFormat, T value) {
    // The conversion was assembled from checked parts.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int length = std::snprintf(nullptr, 0, printfFormat.c_str(), value);
    std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, '\0');
    std::snprintf(text.data(), text.size(), printfFormat.c_str(), value);
#pragma GCC diagnostic pop
    text.pop_back();
    out.append(text.begin(), text.end());
}

char printfLetter(char16_t letter) {
    constexpr std::u16string_view wide = u"DUO";
    const bool isWide = wide.find(letter) != wide.npos;
    return static_cast<char>(isWide ? letter - u'A' + u'a' : letter);
}

/// The form that needs no printf; nothing for others.
std::optional<std::chars_format> plainForm(char16_t letter) {
    switch (letter) {
    case u'f':
        return std::chars_format::fixed;
    case u'e':
        return std::chars_format::scientific;
    case u'g':
        return std::chars_format::general;
    default:
        return std::nullopt;
    }
}

} // namespace

void appendInteger(FormatOutput& out, const FormatConversion& c, const FormatArgument& argument) {
    const char letter = printfLetter(c.letter);
    const bool isSigned = letter == 'd' || letter == 'i';
    // The bits are those of the 64-bit value; a narrower conversion truncates them, as printf does.
    const unsigned width = c.lengthInBytes();
    // A negative number shows its bits after promotion to int, not those of the conversion.
    const unsigned promoted = std::max<unsigned>(argument.byteCount, 4);
    const unsigned bytes = !isSigned && argument.isSigned ? std::min(width, promoted) : width;
    const unsigned long long magnitude = argument.bits & (~0ULL >> (64 - 8 * bytes));
    if (isPlain(c) && !c.precision && (isSigned || letter == 'u' || letter == 'x')) {
        char digits[24];
        const auto end = isSigned
                             ? std::to_chars(digits, std::end(digits), signExtended(argument.bits, width))
                             : std::to_chars(digits, std::end(digits), magnitude, letter == 'x' ? 16 : 10);
        out.append(digits, end.ptr);
    } else if (isSigned) {
        print(out, printfFormat(c, "ll", letter), signExtended(argument.bits, width));
    } else {
        print(out, printfFormat(c, "ll", letter), magnitude);
    }
}

void appendReal(FormatOutput& out, const FormatConversion& c, const FormatArgument& argument) {
    constexpr int standardPrecision = 6;
    const auto form = plainForm(c.letter);
    if (form && isPlain(c) && argument.kind == FormatArgument::Kind::real && std::isfinite(argument.real)) {
        // Enough for all but the largest numbers and precisions.
        char digits[128];
        const auto end = std::to_chars(digits, std::end(digits), argument.real, *form,
                                       c.precision.value_or(standardPrecision));
        if (end.ec == std::errc()) {
            out.append(digits, end.ptr);
            return;
        }
    }
    const DecimalPoint decimalPoint;
    const char letter = printfLetter(c.letter);
    if (argument.kind == FormatArgument::Kind::longReal) {
        print(out, printfFormat(c, "L", letter), *argument.longReal);
    } else {
        print(out, printfFormat(c, "", letter), argument.real);
    }
}

} // namespace qrv
