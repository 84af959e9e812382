#pragma once

// Translucent gradients and patterns, which readers draw differently.

class QPDF;

namespace qrv::engine {

/// Draws what is filled or stroked with a translucent pattern or gradient as a group of its own, to which the
/// opacity is applied: poppler does not apply it to gradients, MuPDF applies it twice to patterns that are
/// translucent themselves. Throws what the PDF library throws.
void groupTranslucentPatterns(QPDF& document);

} // namespace qrv::engine
