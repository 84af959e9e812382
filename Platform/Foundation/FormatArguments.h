#pragma once

// The arguments of a format string, type-erased into a list, so that they can be handed on and a wrong
// conversion prints a visible marker instead of reading invalid memory.
//
// Conversions: %@ (description of an object or a text, "(null)" for nil), %d %i %u %o %x %X %c %C, with the
// length modifiers hh h l ll q z t j, %f %F %e %E %g %G %a %A (L for long double), %s (bytes in UTF-8), %S
// (UTF-16), %p, %%; flags, width, precision and positions ("%2$@") as in printf. The precision of %@ and %S
// is the most UTF-16 units of the text. The flag ' groups no digits, since a format is of no locale.

#include "Platform/Foundation/Object.h"

#include <array>
#include <concepts>
#include <memory>
#include <span>
#include <type_traits>

namespace qrv {

/// One argument. What it points to belongs to the caller.
struct QRV_EXPORT FormatArgument {
    enum class Kind : unsigned char { object, integer, real, longReal, bytes, units, pointer };

    Kind kind;
    bool isSigned;           ///< of an integer
    unsigned char byteCount; ///< of an integer's type

    union {
        const id* object; ///< null for nil
        unsigned long long bits;
        double real;
        const long double* longReal;
        const char* bytes;
        const char16_t* units;
        const void* pointer;
    };
};

/// The kind of an argument of type T.
template <class T>
constexpr FormatArgument::Kind formatKind() {
    using Kind = FormatArgument::Kind;
    if constexpr (std::derived_from<T, id> || std::is_null_pointer_v<T>)
        return Kind::object;
    else if constexpr (std::is_enum_v<T> || std::integral<T>)
        return Kind::integer;
    else if constexpr (std::same_as<T, long double>)
        return Kind::longReal;
    else if constexpr (std::floating_point<T>)
        return Kind::real;
    else if constexpr (std::convertible_to<const T&, const char*>)
        return Kind::bytes;
    else if constexpr (std::convertible_to<const T&, const char16_t*>)
        return Kind::units;
    else {
        static_assert(std::convertible_to<const T&, const void*>, "not a type that a format can print");
        return Kind::pointer;
    }
}

/// Arguments as the expansion of a format reads them.
using FormatArgumentSpan = std::span<const FormatArgument>;

template <class T>
FormatArgument formatArgument(const T& value) {
    FormatArgument argument;
    argument.kind = formatKind<T>();
    argument.isSigned = std::is_signed_v<T>;
    argument.byteCount = sizeof(T);
    if constexpr (std::derived_from<T, id>)
        argument.object = &value;
    else if constexpr (std::is_null_pointer_v<T>)
        argument.object = nullptr;
    else if constexpr (std::is_enum_v<T>)
        return formatArgument(static_cast<std::underlying_type_t<T>>(value));
    else if constexpr (std::integral<T>)
        argument.bits = static_cast<unsigned long long>(+value); // promoted first, as C passes it
    else if constexpr (std::same_as<T, long double>)
        argument.longReal = &value;
    else if constexpr (std::floating_point<T>)
        argument.real = static_cast<double>(value);
    else if constexpr (formatKind<T>() == FormatArgument::Kind::bytes)
        argument.bytes = value;
    else if constexpr (formatKind<T>() == FormatArgument::Kind::units)
        argument.units = value;
    else
        argument.pointer = value;
    return argument;
}

/// The arguments of a call that is under way: refers to them.
template <std::size_t count>
class QRV_EXPORT PassedFormatArguments {
public:
    template <class... Arguments>
    explicit PassedFormatArguments(const Arguments&... arguments) : list_{formatArgument(arguments)...} {}

    operator FormatArgumentSpan() const { return list_; }

private:
    std::array<FormatArgument, count> list_;
};

template <class... Arguments>
PassedFormatArguments(const Arguments&...) -> PassedFormatArguments<sizeof...(Arguments)>;

/// Arguments to be handed on and stored: owns the objects and texts. Copies share them.
class QRV_EXPORT FormatArguments {
public:
    template <class... Arguments>
    explicit FormatArguments(const Arguments&... arguments)
        : storage_(copied(PassedFormatArguments(arguments...))) {}

    operator FormatArgumentSpan() const;

private:
    struct Storage;

    static std::shared_ptr<const Storage> copied(FormatArgumentSpan arguments);

    std::shared_ptr<const Storage> storage_;
};

} // namespace qrv
