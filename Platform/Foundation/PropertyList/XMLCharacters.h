#pragma once

// The characters that XML can contain, even if escaped.

namespace qrv {

/// Whether XML can contain this UTF-16 code unit. True for surrogates, which count in pairs only.
constexpr bool canStandInXML(char16_t unit) {
    if (unit < 0x20) return unit == u'\t' || unit == u'\n' || unit == u'\r';
    return unit != 0xFFFE && unit != 0xFFFF;
}

} // namespace qrv
