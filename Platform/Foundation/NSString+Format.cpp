// Expands formats in one pass. A conversion without a fitting argument prints a marker such as "<%d:
// missing>" or "<%d: wrong type>".

#include "Platform/Foundation/DecimalPoint.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <optional>
#include <string>

namespace qrv {

namespace {

/// Limits the width of a field, so that a format cannot allocate without bound.
constexpr int maximumWidth = 4096;

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

/// A conversion as written, e.g. "%-8.3lf".
struct Conversion {
    std::u16string_view source;
    std::string flags;
    std::optional<std::size_t> position; // from "n$", counted from 0
    std::optional<int> width;
    std::optional<int> precision;
    bool widthFromArgument = false;
    bool precisionFromArgument = false;
    std::string length;
    char16_t letter = 0;
};

class Parser {
public:
    explicit Parser(std::u16string_view rest) : all_(rest) {}

    /// Parses the conversion at the start of the text, which begins with '%'; a letter of 0 means that it is
    /// truncated.
    Conversion parse() {
        Conversion c;
        at_ = 1;
        if (const std::optional<int> number = this->number(); number && peek() == u'$') {
            ++at_;
            c.position = static_cast<std::size_t>(std::max(*number, 1) - 1);
        } else {
            at_ = 1;
        }
        while (std::u16string_view(u"-+ #0'").find(peek()) != std::u16string_view::npos && peek()) {
            const char16_t flag = take();
            // Digits are grouped as the locale says, and formats are of none.
            if (flag != u'\'') c.flags.push_back(static_cast<char>(flag));
        }
        field(c.width, c.widthFromArgument);
        if (peek() == u'.') {
            ++at_;
            field(c.precision, c.precisionFromArgument);
            if (!c.precision && !c.precisionFromArgument) c.precision = 0;
        }
        while (std::u16string_view(u"hlqLztj").find(peek()) != std::u16string_view::npos && peek()) {
            c.length.push_back(static_cast<char>(take()));
        }
        c.letter = peek() ? take() : u'\0';
        c.source = all_.substr(0, at_);
        return c;
    }

private:
    char16_t peek() const { return at_ < all_.size() ? all_[at_] : u'\0'; }

    char16_t take() { return all_[at_++]; }

    std::optional<int> number() {
        if (!isDigit(peek())) return std::nullopt;
        int value = 0;
        while (isDigit(peek())) value = std::min(value * 10 + (take() - u'0'), maximumWidth);
        return value;
    }

    void field(std::optional<int>& value, bool& fromArgument) {
        if (peek() == u'*') {
            ++at_;
            fromArgument = true;
        } else {
            value = number();
        }
    }

    std::u16string_view all_;
    std::size_t at_ = 0;
};

class Renderer {
public:
    Renderer(std::u16string_view format, const std::vector<FormatArgument>& arguments)
        : format_(format), arguments_(arguments) {}

    std::u16string render() {
        std::size_t from = 0;
        for (std::size_t at = format_.find(u'%'); at != std::u16string_view::npos;
             at = format_.find(u'%', from)) {
            out_.append(format_.substr(from, at - from));
            Conversion conversion = Parser(format_.substr(at)).parse();
            from = at + conversion.source.size();
            expand(conversion);
        }
        out_.append(format_.substr(from));
        return std::move(out_);
    }

private:
    void expand(Conversion& c) {
        if (c.letter == u'%') {
            out_.push_back(u'%');
            return;
        }
        if (c.letter == 0) {
            out_.append(c.source);
            return;
        }
        if (c.widthFromArgument) c.width = nextInteger();
        if (c.width && *c.width < 0) {
            c.flags.push_back('-');
            c.width = -*c.width;
        }
        if (c.precisionFromArgument) {
            c.precision = nextInteger();
            if (c.precision && *c.precision < 0) c.precision.reset();
        }
        const std::size_t index = c.position.value_or(next_);
        if (!c.position) ++next_;
        if (index >= arguments_.size()) {
            marker(c, u"missing");
        } else if (!convert(c, arguments_[index])) {
            marker(c, u"wrong type");
        }
    }

    void marker(const Conversion& c, std::u16string_view what) {
        out_.append(u"<").append(c.source).append(u": ").append(what).append(u">");
    }

    std::optional<int> nextInteger() {
        if (next_ >= arguments_.size()) return std::nullopt;
        const auto* integer = std::get_if<FormatInteger>(&arguments_[next_++]);
        if (!integer) return std::nullopt;
        const auto value = static_cast<long long>(integer->bits);
        return static_cast<int>(std::clamp<long long>(value, -maximumWidth, maximumWidth));
    }

    bool convert(const Conversion& c, const FormatArgument& argument) {
        switch (c.letter) {
        case u'@':
            return object(c, argument);
        case u'd':
        case u'i':
        case u'D':
            return integer(c, argument, true);
        case u'u':
        case u'U':
        case u'o':
        case u'O':
        case u'x':
        case u'X':
            return integer(c, argument, false);
        case u'c':
        case u'C':
            return character(c, argument);
        case u'f':
        case u'F':
        case u'e':
        case u'E':
        case u'g':
        case u'G':
        case u'a':
        case u'A':
            return real(c, argument);
        case u's':
            return bytes(c, argument);
        case u'S':
            return units(c, argument);
        case u'p':
            return pointer(c, argument);
        default:
            return false;
        }
    }

    bool object(const Conversion& c, const FormatArgument& argument) {
        const auto* value = std::get_if<id>(&argument);
        if (!value) return false;
        if (value->isNil()) {
            padded(c, cut(c, u"(null)"));
        } else {
            const NSString text = value->description();
            padded(c, cut(c, text.isNil() ? u"(null)" : text.view()));
        }
        return true;
    }

    bool integer(const Conversion& c, const FormatArgument& argument, bool isSigned) {
        const auto* value = std::get_if<FormatInteger>(&argument);
        if (!value) return false;
        // The bits are those of the 64-bit value; a narrower conversion truncates them, as printf does.
        const unsigned width = lengthInBytes(c);
        const std::string spec = "%" + fields(c) + "ll" + static_cast<char>(toPrintf(c.letter));
        if (isSigned) {
            print(spec.c_str(), signExtended(value->bits, width));
        } else {
            // A negative number shows its bits after promotion to int, not those of the conversion.
            const unsigned promoted = std::max<unsigned>(value->bytes, 4);
            const unsigned bytes = value->isSigned ? std::min(width, promoted) : width;
            print(spec.c_str(), value->bits & (~0ULL >> (64 - 8 * bytes)));
        }
        return true;
    }

    bool character(const Conversion& c, const FormatArgument& argument) {
        const auto* value = std::get_if<FormatInteger>(&argument);
        if (!value) return false;
        const auto code = static_cast<char16_t>(c.letter == u'c' ? value->bits & 0xFF : value->bits & 0xFFFF);
        padded(c, std::u16string_view(&code, 1));
        return true;
    }

    bool real(const Conversion& c, const FormatArgument& argument) {
        const DecimalPoint decimalPoint;
        const std::string prefix = "%" + fields(c);
        if (const auto* value = std::get_if<double>(&argument)) {
            print((prefix + static_cast<char>(c.letter)).c_str(), *value);
        } else if (const auto* wide = std::get_if<long double>(&argument)) {
            print((prefix + 'L' + static_cast<char>(c.letter)).c_str(), *wide);
        } else {
            return false;
        }
        return true;
    }

    bool bytes(const Conversion& c, const FormatArgument& argument) {
        const auto* value = std::get_if<FormatPointer>(&argument);
        if (!value) return false;
        if (!value->address) return padded(c, u"(null)");
        const auto* text = std::get_if<std::string>(&value->text);
        if (!text) return false;
        return padded(c, unicode::fromUTF8Lossy(
                             c.precision ? text->substr(0, static_cast<std::size_t>(*c.precision)) : *text));
    }

    bool units(const Conversion& c, const FormatArgument& argument) {
        const auto* value = std::get_if<FormatPointer>(&argument);
        if (!value) return false;
        if (!value->address) return padded(c, u"(null)");
        const auto* text = std::get_if<std::u16string>(&value->text);
        if (!text) return false;
        return padded(c, cut(c, *text));
    }

    bool pointer(const Conversion& c, const FormatArgument& argument) {
        const void* address = nullptr;
        if (const auto* value = std::get_if<FormatPointer>(&argument)) {
            address = value->address;
        } else if (const auto* object = std::get_if<id>(&argument)) {
            address = object->shared().get();
        } else {
            return false;
        }
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "0x%llx",
                      static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address)));
        return padded(c, unicode::fromUTF8Lossy(text.data()));
    }

    /// As many UTF-16 units as the precision says; no half of a surrogate pair.
    static std::u16string_view cut(const Conversion& c, std::u16string_view text) {
        auto length = std::min(text.size(), static_cast<std::size_t>(c.precision.value_or(INT_MAX)));
        const bool splitsPair = length > 0 && length < text.size() && (text[length] & 0xFC00) == 0xDC00 &&
                                (text[length - 1] & 0xFC00) == 0xD800;
        return text.substr(0, splitsPair ? length - 1 : length);
    }

    static unsigned lengthInBytes(const Conversion& c) {
        if (c.letter == u'D' || c.letter == u'U' || c.letter == u'O') return 8;
        if (c.length == "hh") return 1;
        if (c.length == "h") return 2;
        return c.length.empty() ? 4 : 8;
    }

    static char16_t toPrintf(char16_t letter) {
        return letter == u'D' ? u'd' : letter == u'U' ? u'u' : letter == u'O' ? u'o' : letter;
    }

    static long long signExtended(unsigned long long bits, unsigned bytes) {
        const unsigned shift = 64 - 8 * bytes;
        return static_cast<long long>(bits << shift) >> shift;
    }

    static std::string fields(const Conversion& c) {
        std::string text = c.flags;
        if (c.width) text += std::to_string(*c.width);
        if (c.precision) text += "." + std::to_string(*c.precision);
        return text;
    }

    template <class T>
    void print(const char* spec, T value) {
        // The conversion was assembled above from checked parts.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        const int length = std::snprintf(nullptr, 0, spec, value);
        std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, '\0');
        std::snprintf(text.data(), text.size(), spec, value);
#pragma GCC diagnostic pop
        text.pop_back();
        out_.append(text.begin(), text.end());
    }

    bool padded(const Conversion& c, std::u16string_view text) {
        const std::size_t width = static_cast<std::size_t>(c.width.value_or(0));
        const std::size_t missing = width > text.size() ? width - text.size() : 0;
        const bool left = c.flags.find('-') != std::string::npos;
        if (!left) out_.append(missing, u' ');
        out_.append(text);
        if (left) out_.append(missing, u' ');
        return true;
    }

    std::u16string_view format_;
    const std::vector<FormatArgument>& arguments_;
    std::size_t next_ = 0;
    std::u16string out_;
};

} // namespace

NSString NSString::stringWithFormat_arguments(const NSString& format, const FormatArguments& arguments) {
    if (format.isNil()) return {};
    return NSString(Renderer(format.view(), arguments.list()).render());
}

} // namespace qrv
