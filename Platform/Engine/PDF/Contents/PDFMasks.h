#pragma once

// The engine's inverted masks, which not every reader knows.

class QPDF;

namespace qrv::engine {

/// Draws nothing through inverted masks that let nothing through, of which poppler shows the edge, and writes
/// all others without the inversion, which MuPDF does not know. Throws what the PDF library throws.
void resolveInvertedMasks(QPDF& document);

} // namespace qrv::engine
