#pragma once

// Sheets at the end of a print on which nothing is.

class QPDF;

namespace qrv::engine {

/// Removes the last pages as long as they show nothing but the page's own background: what fills all that is
/// between margins of this width (points). The first page always stays. Throws what the PDF library throws.
void removeEmptySheetsAtEnd(QPDF& document, double margin);

} // namespace qrv::engine
