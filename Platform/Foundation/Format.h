#pragma once

// A format string as a parameter. A literal is checked against the arguments while it is compiled, and a
// fault is named by the function that the compiler says is not constant, such as `aConversionHasNoArgument`.
// A format that is known at run time only is not checked: faults show as markers in the text.
//
//     template <class... Arguments>
//     void say(FormatFor<Arguments...> format, const Arguments&... arguments);

#include "Platform/Foundation/FormatArguments.h"

#include <cstddef>
#include <string_view>
#include <type_traits>

namespace qrv {

class NSString;

namespace format {

/// Declared only: what they are called for is no constant expression.
void aConversionHasNoArgument();
void anArgumentHasNoConversion();
void aConversionIsUnknown();
void anArgumentDoesNotFitItsConversion();
void aWidthOrPrecisionIsNoInteger();

using Kind = FormatArgument::Kind;

constexpr bool fits(char32_t letter, Kind kind) {
    constexpr std::u32string_view integers = U"diDuUoOxXcC";
    constexpr std::u32string_view reals = U"fFeEgGaA";
    if (letter == U'@') return kind == Kind::object || kind == Kind::bytes || kind == Kind::units;
    if (integers.find(letter) != integers.npos) return kind == Kind::integer;
    if (reals.find(letter) != reals.npos) return kind == Kind::real || kind == Kind::longReal;
    if (letter == U's') return kind == Kind::bytes;
    if (letter == U'S') return kind == Kind::units;
    if (letter == U'p') return kind != Kind::integer && kind != Kind::real && kind != Kind::longReal;
    aConversionIsUnknown();
    return false;
}

/// Checks a literal with the rules of the expansion. `Char` is char or char16_t.
template <class Char, std::size_t count>
class QRV_EXPORT Checker {
public:
    constexpr Checker(std::basic_string_view<Char> text, const std::array<Kind, count>& kinds)
        : text_(text), kinds_(kinds) {}

    constexpr void check() {
        while (at_ < text_.size())
            if (text_[at_++] == '%') conversion();
        if (!hasPositions_ && next_ < count) anArgumentHasNoConversion();
    }

private:
    constexpr void conversion() {
        std::size_t position = 0;
        const std::size_t start = at_;
        if (const std::size_t number = digits(); number > 0 && peek() == '$') {
            position = number;
            hasPositions_ = true;
            ++at_;
        } else {
            at_ = start;
        }
        skip("-+ #0'");
        field();
        if (peek() == '.') {
            ++at_;
            field();
        }
        skip("hlqLztj");
        const Char letter = peek();
        ++at_;
        if (letter == '%') return;
        if (letter == 0) aConversionIsUnknown();
        const std::size_t index = position > 0 ? position - 1 : next_++;
        if (index >= count)
            aConversionHasNoArgument();
        else if (!fits(static_cast<char32_t>(letter), kinds_[index]))
            anArgumentDoesNotFitItsConversion();
    }

    constexpr void field() {
        if (peek() != '*') {
            digits();
            return;
        }
        ++at_;
        if (next_ >= count)
            aConversionHasNoArgument();
        else if (kinds_[next_++] != Kind::integer)
            aWidthOrPrecisionIsNoInteger();
    }

    constexpr std::size_t digits() {
        std::size_t number = 0;
        for (; peek() >= '0' && peek() <= '9'; ++at_)
            number = number * 10 + static_cast<std::size_t>(peek() - '0');
        return number;
    }

    constexpr void skip(std::string_view characters) {
        while (peek() != 0 && peek() < 128 && characters.find(static_cast<char>(peek())) != characters.npos)
            ++at_;
    }

    constexpr Char peek() const { return at_ < text_.size() ? text_[at_] : Char(0); }

    std::basic_string_view<Char> text_;
    const std::array<Kind, count>& kinds_;
    std::size_t at_ = 0;
    std::size_t next_ = 0;
    bool hasPositions_ = false;
};

} // namespace format

/// A format, whatever its arguments are; valid for as long as what it was made from.
class QRV_EXPORT AnyFormat {
public:
    /// nil for a format that is nil, and for a null pointer.
    NSString string() const;
    bool isNil() const;

    /// The UTF-16 units, where the format has them; none for one in UTF-8.
    std::u16string_view units() const;

    bool isUTF8() const { return bytes_ != nullptr; }

protected:
    constexpr AnyFormat() = default;

    constexpr explicit AnyFormat(std::u16string_view units) : units_(units.data()), size_(units.size()) {}

    constexpr explicit AnyFormat(std::string_view bytes) : bytes_(bytes.data()), size_(bytes.size()) {}

    explicit AnyFormat(const NSString& string) : string_(&string) {}

private:
    const char16_t* units_ = nullptr;
    const char* bytes_ = nullptr;
    std::size_t size_ = 0;
    const NSString* string_ = nullptr;
};

/// The format for arguments of these types.
template <class... Arguments>
class QRV_EXPORT CheckedFormat : public AnyFormat {
public:
    /// nil.
    constexpr CheckedFormat() = default;

    template <std::size_t size>
    consteval CheckedFormat(const char16_t (&literal)[size])
        : AnyFormat(std::u16string_view(literal, size - 1)) {
        check(std::u16string_view(literal, size - 1));
    }

    template <std::size_t size>
    consteval CheckedFormat(const char (&literal)[size]) : AnyFormat(std::string_view(literal, size - 1)) {
        check(std::string_view(literal, size - 1));
    }

    CheckedFormat(const NSString& string) : AnyFormat(string) {}

    /// Known at run time only; ends in a zero.
    template <class Pointer>

    requires std::is_pointer_v<Pointer> && std::convertible_to<Pointer, const char16_t*>
    CheckedFormat(const Pointer& units)
        : AnyFormat(units ? std::u16string_view(units) : std::u16string_view()) {}

private:
    template <class Char>
    static consteval void check(std::basic_string_view<Char> text) {
        constexpr std::array<FormatArgument::Kind, sizeof...(Arguments)> kinds{formatKind<Arguments>()...};
        format::Checker<Char, sizeof...(Arguments)>(text, kinds).check();
    }
};

/// So that the arguments' types come from the arguments alone.
template <class... Arguments>
using FormatFor = CheckedFormat<std::type_identity_t<Arguments>...>;

} // namespace qrv
