// Values as text, by their type encoding.

#include "QRVFoundation/Source/QRVFunctions.h"

#include "Platform/Foundation/NSRange.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace qrv {

namespace {

/// Reads a value that need not be aligned.
template <class T>
T read(const void* pointer) {
    T value;
    std::memcpy(static_cast<void*>(&value), pointer, sizeof value);
    return value;
}

NSString character(const void* pointer) {
    const auto value = read<std::int8_t>(pointer);
    if (value == 1) return u"YES";
    if (value == 0) return u"NO";
    return NSString::stringWithFormat(u"'%c'", value);
}

NSString name(const void* pointer) {
    return NSString::stringWithUTF8String(read<const char*>(pointer));
}

NSString bytes(const void* pointer) {
    return NSString::stringWithFormat(u"%s", read<const char*>(pointer));
}

NSString object(const void* pointer) {
    return NSString::stringWithFormat(u"%@", *static_cast<const id*>(pointer));
}

struct Encoding {
    std::string_view name;
    NSString (*text)(const void* pointer);
};

constexpr Encoding encodings[] = {
    {"c", character},
    {"s", [](const void* p) { return NSString::stringWithFormat(u"%hi", read<std::int16_t>(p)); }},
    {"S", [](const void* p) { return NSString::stringWithFormat(u"%hu", read<std::uint16_t>(p)); }},
    {"i", [](const void* p) { return NSString::stringWithFormat(u"%i", read<std::int32_t>(p)); }},
    {"I", [](const void* p) { return NSString::stringWithFormat(u"%u", read<std::uint32_t>(p)); }},
    {"q", [](const void* p) { return NSString::stringWithFormat(u"%li", read<std::int64_t>(p)); }},
    {"Q", [](const void* p) { return NSString::stringWithFormat(u"%lu", read<std::uint64_t>(p)); }},
    {"f", [](const void* p) { return NSString::stringWithFormat(u"%f", read<float>(p)); }},
    {"d", [](const void* p) { return NSString::stringWithFormat(u"%f", read<double>(p)); }},
    {"D", [](const void* p) { return NSString::stringWithFormat(u"%Lf", read<long double>(p)); }},
    {":", name},
    {"#", object},
    {"^v", [](const void* p) { return NSString::stringWithFormat(u"%p", read<const void*>(p)); }},
    {"*", bytes},
    {"r*", bytes},
    {"{_NSRange=QQ}", [](const void* p) { return NSStringFromRange(read<NSRange>(p)); }},
    {"{CGPoint=dd}", [](const void* p) { return NSStringFromPoint(read<NSPoint>(p)); }},
    {"{CGSize=dd}", [](const void* p) { return NSStringFromSize(read<NSSize>(p)); }},
    {"{CGRect={CGPoint=dd}{CGSize=dd}}", [](const void* p) { return NSStringFromRect(read<NSRect>(p)); }},
    {"^{__CFString=}", object},
    {"r^{__CFString=}", object},
    {"@", object},
};

/// Returns the length of a character array, "[8c]", or of one without a length, "[c]"; nullopt for another
/// encoding.
std::optional<std::size_t> characterArrayLength(std::string_view encoding) {
    if (encoding.size() < 3 || !encoding.starts_with('[') || !encoding.ends_with("c]")) return std::nullopt;
    const std::string_view digits = encoding.substr(1, encoding.size() - 3);
    if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    std::size_t length = std::string_view::npos;
    std::from_chars(digits.data(), digits.data() + digits.size(), length);
    return length;
}

} // namespace

NSString QRVFunctions::stringFromPointer_typeEncoding(const void* pointer, const char* typeEncoding) {
    const std::string_view encoding = typeEncoding ? typeEncoding : "";
    if (!pointer) {
        assertionFailedForFile_line_object_selector_format(
            "QRVFoundation/Source/QRVFunctions", __LINE__, Class(classInfo),
            "stringFromPointer:typeEncoding:", u"No value for type encoding: %s", typeEncoding);
    }
    if (const std::optional<std::size_t> length = characterArrayLength(encoding)) {
        const char* start = static_cast<const char*>(pointer);
        return NSString::fromUTF8({start, strnlen(start, *length)});
    }
    const auto* found = std::find_if(std::begin(encodings), std::end(encodings),
                                     [&](const Encoding& known) { return known.name == encoding; });
    if (found == std::end(encodings)) {
        assertionFailedForFile_line_object_selector_format(
            "QRVFoundation/Source/QRVFunctions", __LINE__, Class(classInfo),
            "stringFromPointer:typeEncoding:", u"Unhandled type encoding: %s", typeEncoding);
    }
    return found->text(pointer);
}

} // namespace qrv
