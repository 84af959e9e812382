#pragma once

// Which characters a document in XML can hold, be it as escapes.

namespace qrv {

/// Whether this unit of UTF-16 may stand in XML. Surrogates may, where they are in pairs.
constexpr bool canStandInXML(char16_t unit) {
    if (unit < 0x20) return unit == u'\t' || unit == u'\n' || unit == u'\r';
    return unit != 0xFFFE && unit != 0xFFFF;
}

} // namespace qrv
