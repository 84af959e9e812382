#pragma once

// Corrects the text that glyphs stand for when it is selected, searched or copied. Many fonts draw several
// characters with one glyph, and a renderer may name the unusual one: the radical U+2F42 instead of an
// ideograph, or the medial form of an Arabic letter. People search for the usual one.

#include <optional>
#include <string>

class QPDF;

namespace qrv::engine {

/// Replaces radicals, presentation forms and ligatures by the usual characters in a mapping from glyphs to
/// texts; nothing if there are none. Lines that are not part of a mapping stay.
std::optional<std::string> withUsualCharacters(const std::string& mapping);

/// Corrects the mappings of all fonts.
void correctGlyphTexts(QPDF& document);

} // namespace qrv::engine
