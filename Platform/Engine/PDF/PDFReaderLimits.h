#pragma once

// Keeps a document within what common readers take: beyond that they refuse a page, or mix up its places.

#include <string>

class QPDF;

namespace qrv::engine {

/// Keeps the first 10,000 annotations of each page, and adds a line for the log to `notes` if there are more:
/// poppler cannot show such a page. Gives destinations whose names have more than 127 bytes other ones, for
/// their links as well: MuPDF takes names that begin with the same 127 bytes for one. The same for names with
/// a number sign, which readers take for the beginning of an escape. Throws what the PDF library throws.
void keepWithinReaderLimits(QPDF& document, std::string& notes);

} // namespace qrv::engine
