#pragma once

// What the glyphs of a font say when text is selected, searched or copied; for the units of this folder only.
// Many fonts draw several characters with one glyph, and a renderer may name the unusual one of them: the
// radical U+2F42 for an ideograph, a form that an Arabic letter has in the middle of a word. Whoever searches
// types the usual one.

#include <optional>
#include <string>

class QPDF;

namespace qrv::engine {

/// A mapping from glyphs to texts with the usual characters in place of radicals, presentation forms and
/// ligatures; nothing when there are none. Lines that are no part of a mapping stay as they are.
std::optional<std::string> withUsualCharacters(const std::string& mapping);

/// Makes the texts of all fonts findable.
void correctGlyphTexts(QPDF& document);

} // namespace qrv::engine
