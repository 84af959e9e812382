#pragma once

// The characters that XML can contain, and how they are escaped.

#include <string>
#include <string_view>

namespace qrv {

/// Whether XML can contain this UTF-16 code unit. True for surrogates, which count in pairs only.
constexpr bool canStandInXML(char16_t unit) {
    if (unit < 0x20) return unit == u'\t' || unit == u'\n' || unit == u'\r';
    return unit != 0xFFFE && unit != 0xFFFF;
}

/// Text in UTF-8 as the contents of an element; with quotes escaped, too, as the value of an attribute.
std::string escapedForXML(std::string_view text, bool escapesQuotes = false);

} // namespace qrv
