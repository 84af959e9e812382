#pragma once

// Gradients and patterns, which readers draw differently.

class QPDF;

namespace qrv::engine {

/// Draws what is filled or stroked with such patterns as a group of its own:
/// translucent ones, since poppler does not apply the opacity to gradients, and MuPDF applies it twice to
/// patterns that are translucent themselves; gradients of translucent colours, which the engine draws as
/// tiles, of which pdf.js darkens the colours; and gradients whose colours are a function, which MuPDF and
/// pdf.js compute for few places of the whole page. Throws what the PDF library throws.
void groupPatterns(QPDF& document);

} // namespace qrv::engine
