#pragma once

// The arguments of a format string, type-erased into an owning list. A format and its arguments can thus be
// passed on and stored, and a wrong conversion prints a visible marker instead of reading invalid memory.
//
// Conversions: %@ (description of an object, "(null)" for nil), %d %i %u %o %x %X %c %C, with the length
// modifiers hh h l ll q z t j, %f %F %e %E %g %G %a %A (L for long double), %s (bytes in UTF-8), %S (UTF-16),
// %p, %%; flags, width, precision and positions ("%2$@") as in printf. The precision of %@ and %S is the most
// UTF-16 units of the text. The flag ' groups no digits, since a format is of no locale.

#include "Platform/Foundation/Object.h"

#include <concepts>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace qrv {

/// A pointer as %p prints it, and the text it points to if the argument was a text.
struct QRV_EXPORT FormatPointer {
    const void* address = nullptr;
    std::variant<std::monostate, std::string, std::u16string> text;
};

/// An integer and the width of its type.
struct QRV_EXPORT FormatInteger {
    unsigned long long bits = 0;
    unsigned char bytes = 4;
    bool isSigned = true;
};

using FormatArgument = std::variant<id, FormatInteger, double, long double, FormatPointer>;

class QRV_EXPORT FormatArguments {
public:
    template <class... Arguments>
    explicit FormatArguments(const Arguments&... arguments) {
        list_.reserve(sizeof...(arguments));
        (list_.push_back(erase(arguments)), ...);
    }

    const std::vector<FormatArgument>& list() const { return list_; }

private:
    template <class T>
    static FormatArgument erase(const T& value) {
        if constexpr (std::derived_from<T, id>) {
            return id(value);
        } else if constexpr (std::is_null_pointer_v<T>) {
            return id();
        } else if constexpr (std::is_enum_v<T>) {
            return erase(static_cast<std::underlying_type_t<T>>(value));
        } else if constexpr (std::integral<T>) {
            return FormatInteger{static_cast<unsigned long long>(value), sizeof(T), std::is_signed_v<T>};
        } else if constexpr (std::same_as<T, long double>) {
            return value;
        } else if constexpr (std::floating_point<T>) {
            return static_cast<double>(value);
        } else if constexpr (std::convertible_to<const T&, const char*>) {
            return fromBytes(value);
        } else if constexpr (std::convertible_to<const T&, const char16_t*>) {
            return fromUnits(value);
        } else {
            static_assert(std::convertible_to<const T&, const void*>, "not a type that a format can print");
            return FormatPointer{value, {}};
        }
    }

    static FormatArgument fromBytes(const char* bytes) {
        return FormatPointer{bytes, bytes ? decltype(FormatPointer::text)(std::string(bytes))
                                          : decltype(FormatPointer::text)()};
    }

    static FormatArgument fromUnits(const char16_t* units) {
        return FormatPointer{units, units ? decltype(FormatPointer::text)(std::u16string(units))
                                          : decltype(FormatPointer::text)()};
    }

    std::vector<FormatArgument> list_;
};

} // namespace qrv
