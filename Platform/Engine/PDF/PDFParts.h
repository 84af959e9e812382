#pragma once

// Joins the parts of a document that was printed one part after the other.

class QPDF;

namespace qrv::engine {

/// Appends a part's pages to the document, with what the catalogue of the part says of them: its named
/// destinations, where the document has none of that name, its outline behind the document's, and its
/// structure inside the document's outermost element. The part must live until the document is written, and
/// is of no other use. Throws what the PDF library throws for broken parts.
void appendPart(QPDF& document, QPDF& part);

} // namespace qrv::engine
