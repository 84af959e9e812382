// Numbers at the start of a text, and geometry as text.

#include "Platform/Foundation/DecimalPoint.h"
#include "Platform/Foundation/NSString.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace qrv {

namespace {

bool isSpace(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == u'\u0085' || c == u'\u00A0' || c == u'\u2028' ||
           c == u'\u2029' || c == u'\u3000' || (c >= u'\u2000' && c <= u'\u200A');
}

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

std::u16string_view skipSpace(std::u16string_view text) {
    const auto first = std::find_if_not(text.begin(), text.end(), isSpace);
    return text.substr(static_cast<std::size_t>(first - text.begin()));
}

/// The longest decimal number at the start of the text, and how many units it takes (0 if there is none).
struct LeadingNumber {
    double value = 0;
    std::size_t units = 0;
};

LeadingNumber leadingNumber(std::u16string_view text) {
    const std::size_t sign = !text.empty() && (text[0] == u'+' || text[0] == u'-') ? 1 : 0;
    const std::u16string_view digits = text.substr(sign);
    // A second sign is not a number, and "infinity" is a word: neither may reach the conversion.
    const bool isNumber = !digits.empty() && (isDigit(digits[0]) ||
                                              (digits[0] == u'.' && digits.size() > 1 && isDigit(digits[1])));
    if (!isNumber) return {};
    const std::size_t end = digits.find_first_not_of(u"0123456789.eE+-");
    const std::u16string_view candidate = digits.substr(0, end);
    const std::string ascii(candidate.begin(), candidate.end());
    const DecimalPoint decimalPoint;
    char* stop = nullptr;
    LeadingNumber number;
    number.value = std::strtod(ascii.c_str(), &stop);
    number.units = sign + static_cast<std::size_t>(stop - ascii.c_str());
    if (sign && text[0] == u'-') number.value = -number.value;
    return number;
}

} // namespace

bool NSString::boolValue() const {
    std::u16string_view text = skipSpace(view());
    if (!text.empty() && (text[0] == u'+' || text[0] == u'-')) text.remove_prefix(1);
    text = text.substr(std::min(text.find_first_not_of(u'0'), text.size()));
    if (text.empty()) return false;
    const char16_t c = text[0];
    return c == u'Y' || c == u'y' || c == u'T' || c == u't' || (c >= u'1' && c <= u'9');
}

long long NSString::integerValue() const {
    std::u16string_view text = skipSpace(view());
    const bool negative = !text.empty() && text[0] == u'-';
    if (!text.empty() && (text[0] == u'+' || text[0] == u'-')) text.remove_prefix(1);
    using Limits = std::numeric_limits<long long>;
    long long value = 0;
    for (const char16_t c : text) {
        if (!isDigit(c)) break;
        const int digit = c - u'0';
        // Accumulated as a negative number, since the negative range is larger by one.
        if (value < (Limits::min() + digit) / 10) return negative ? Limits::min() : Limits::max();
        value = value * 10 - digit;
    }
    if (negative) return value;
    return value == Limits::min() ? Limits::max() : -value;
}

double NSString::doubleValue() const {
    return leadingNumber(skipSpace(view())).value;
}

NSString NSStringFromRange(NSRange range) {
    return NSString::stringWithFormat(u"{%lu, %lu}", range.location, range.length);
}

NSString NSStringFromPoint(NSPoint point) {
    return NSString::stringWithFormat(u"{%.17g, %.17g}", point.x, point.y);
}

NSString NSStringFromSize(NSSize size) {
    return NSString::stringWithFormat(u"{%.17g, %.17g}", size.width, size.height);
}

NSString NSStringFromRect(NSRect rect) {
    return NSString::stringWithFormat(u"{%@, %@}", NSStringFromPoint(rect.origin),
                                      NSStringFromSize(rect.size));
}

NSSize NSSizeFromString(const NSString& text) {
    double numbers[2] = {0, 0};
    std::size_t count = 0;
    std::u16string_view rest = text.view();
    while (!rest.empty() && count < 2) {
        const LeadingNumber number = leadingNumber(rest);
        if (number.units) numbers[count++] = number.value;
        rest.remove_prefix(std::max<std::size_t>(number.units, 1));
    }
    return {numbers[0], numbers[1]};
}

} // namespace qrv
