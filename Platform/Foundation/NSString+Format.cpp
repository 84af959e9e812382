// Expands formats in one pass. A conversion without a fitting argument prints a marker such as "<%d:
// missing>" or "<%d: wrong type>".

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/FormatConversion.h"
#include "Platform/Foundation/FormatNumbers.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstddef>
#include <memory_resource>
#include <optional>
#include <string>

namespace qrv {

namespace {

using Kind = FormatArgument::Kind;

class Renderer {
public:
    Renderer(std::u16string_view format, FormatArgumentSpan arguments)
        : format_(format), arguments_(arguments) {}

    NSString render() {
        constexpr std::size_t lengthOfArgument = 16; // of most
        out_.reserve(format_.size() + lengthOfArgument * arguments_.size());
        std::size_t from = 0;
        for (std::size_t at = format_.find(u'%'); at != std::u16string_view::npos;
             at = format_.find(u'%', from)) {
            out_.append(format_.substr(from, at - from));
            if (at + 1 < format_.size() && expandBare(format_[at + 1])) {
                from = at + 2;
                continue;
            }
            FormatConversion conversion = FormatConversion::parse(format_.substr(at));
            from = at + conversion.source.size();
            expand(conversion);
        }
        out_.append(format_.substr(from));
        return NSString(std::u16string_view(out_));
    }

private:
    /// Expands what most conversions are: a bare letter, of a text or an integer. False for others.
    bool expandBare(char16_t letter) {
        if (next_ >= arguments_.size()) return false;
        const FormatArgument& argument = arguments_[next_];
        if (letter == u'@' && argument.kind == Kind::object && argument.object) {
            const auto text = NSString::viewOf(*argument.object);
            if (!text) return false;
            out_.append(*text);
        } else if (letter == u'd' && argument.kind == Kind::integer) {
            char digits[16];
            char* const end = std::to_chars(digits, std::end(digits), static_cast<int>(argument.bits)).ptr;
            out_.append(std::begin(digits), end);
        } else {
            return false;
        }
        ++next_;
        return true;
    }

    void expand(FormatConversion& c) {
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
            c.isLeft = true;
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

    void marker(const FormatConversion& c, std::u16string_view what) {
        out_.append(u"<").append(c.source).append(u": ").append(what).append(u">");
    }

    std::optional<int> nextInteger() {
        if (next_ >= arguments_.size()) return std::nullopt;
        const FormatArgument& argument = arguments_[next_++];
        if (argument.kind != Kind::integer) return std::nullopt;
        constexpr long long most = FormatConversion::maximumWidth;
        return static_cast<int>(std::clamp(static_cast<long long>(argument.bits), -most, most));
    }

    bool convert(const FormatConversion& c, const FormatArgument& argument) {
        switch (c.letter) {
        case u'@':
            return object(c, argument);
        case u'd':
        case u'i':
        case u'D':
        case u'u':
        case u'U':
        case u'o':
        case u'O':
        case u'x':
        case u'X':
            if (argument.kind != Kind::integer) return false;
            appendInteger(out_, c, argument);
            return true;
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
            if (argument.kind != Kind::real && argument.kind != Kind::longReal) return false;
            appendReal(out_, c, argument);
            return true;
        case u's':
            return argument.kind == Kind::bytes ? bytes(c, argument.bytes) : isNullPointer(c, argument);
        case u'S':
            return argument.kind == Kind::units ? units(c, argument.units) : isNullPointer(c, argument);
        case u'p':
            return pointer(c, argument);
        default:
            return false;
        }
    }

    bool object(const FormatConversion& c, const FormatArgument& argument) {
        if (argument.kind == Kind::units) return units(c, argument.units);
        if (argument.kind == Kind::bytes) {
            const std::u16string text = argument.bytes ? unicode::fromUTF8Lossy(argument.bytes) : u"(null)";
            return padded(c, cut(c, text));
        }
        if (argument.kind != Kind::object) return false;
        if (!argument.object || argument.object->isNil()) return padded(c, cut(c, u"(null)"));
        const NSString text = argument.object->description();
        return padded(c, cut(c, text.isNil() ? u"(null)" : text.view()));
    }

    bool character(const FormatConversion& c, const FormatArgument& argument) {
        if (argument.kind != Kind::integer) return false;
        const auto code =
            static_cast<char16_t>(c.letter == u'c' ? argument.bits & 0xFF : argument.bits & 0xFFFF);
        return padded(c, std::u16string_view(&code, 1));
    }

    /// Shows any other pointer that is null as a missing text.
    bool isNullPointer(const FormatConversion& c, const FormatArgument& argument) {
        const bool isNull = (argument.kind == Kind::pointer && !argument.pointer) ||
                            (argument.kind == Kind::bytes && !argument.bytes) ||
                            (argument.kind == Kind::units && !argument.units);
        return isNull && padded(c, u"(null)");
    }

    bool bytes(const FormatConversion& c, const char* text) {
        if (!text) return padded(c, u"(null)");
        std::string_view view(text);
        if (c.precision) view = view.substr(0, static_cast<std::size_t>(*c.precision));
        return padded(c, unicode::fromUTF8Lossy(view));
    }

    bool units(const FormatConversion& c, const char16_t* text) {
        return padded(c, text ? cut(c, text) : u"(null)");
    }

    bool pointer(const FormatConversion& c, const FormatArgument& argument) {
        const void* address = nullptr;
        switch (argument.kind) {
        case Kind::object:
            if (argument.object) address = argument.object->shared().get();
            break;
        case Kind::bytes:
            address = argument.bytes;
            break;
        case Kind::units:
            address = argument.units;
            break;
        case Kind::pointer:
            address = argument.pointer;
            break;
        default:
            return false;
        }
        char text[2 + 2 * sizeof(void*)] = {'0', 'x'};
        char* const end =
            std::to_chars(text + 2, std::end(text), reinterpret_cast<std::uintptr_t>(address), 16).ptr;
        return padded(c, std::u16string(std::begin(text), end));
    }

    /// As many UTF-16 units as the precision says; no half of a surrogate pair.
    static std::u16string_view cut(const FormatConversion& c, std::u16string_view text) {
        const auto length = std::min(text.size(), static_cast<std::size_t>(c.precision.value_or(INT_MAX)));
        const bool splitsPair = length > 0 && length < text.size() && (text[length] & 0xFC00) == 0xDC00 &&
                                (text[length - 1] & 0xFC00) == 0xD800;
        return text.substr(0, splitsPair ? length - 1 : length);
    }

    bool padded(const FormatConversion& c, std::u16string_view text) {
        const std::size_t width = static_cast<std::size_t>(c.width.value_or(0));
        const std::size_t missing = width > text.size() ? width - text.size() : 0;
        if (!c.isLeft) out_.append(missing, u' ');
        out_.append(text);
        if (c.isLeft) out_.append(missing, u' ');
        return true;
    }

    std::u16string_view format_;
    FormatArgumentSpan arguments_;
    std::size_t next_ = 0;
    // Most texts are short: one copy of the right size is made of them in the end.
    std::array<std::byte, 1024> space_;
    std::pmr::monotonic_buffer_resource memory_{space_.data(), space_.size()};
    FormatOutput out_{&memory_};
};

} // namespace

bool AnyFormat::isNil() const {
    return string_ ? string_->isNil() : !units_ && !bytes_;
}

NSString AnyFormat::string() const {
    if (string_) return *string_;
    if (bytes_) return NSString::fromUTF8({bytes_, size_});
    return units_ ? NSString(std::u16string_view(units_, size_)) : NSString();
}

std::u16string_view AnyFormat::units() const {
    return string_ ? string_->view() : std::u16string_view(units_, size_);
}

NSString NSString::expanded(const AnyFormat& format, FormatArgumentSpan arguments) {
    if (format.isNil()) return {};
    if (format.isUTF8()) return Renderer(format.string().view(), arguments).render();
    return Renderer(format.units(), arguments).render();
}

NSString NSString::stringWithFormat_arguments(const NSString& format, const FormatArguments& arguments) {
    return format.isNil() ? NSString() : Renderer(format.view(), arguments).render();
}

} // namespace qrv
