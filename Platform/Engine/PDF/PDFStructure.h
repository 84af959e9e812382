#pragma once

// Edits the structure tree, which marks a document's headings, paragraphs, tables and links.

#include "Platform/PDFKit/UnreadObjects.h"

#include <string>

class QPDF;

namespace qrv::engine {

/// Leaves the tree's elements unread but for the topmost. Most objects of a print are elements, of which
/// nothing else is edited. To be called before anything else looks at the document. Throws what the PDF
/// library throws.
UnreadObjects unreadElements(QPDF& document, const NSData& pdf);

/// Sets the document's language, also in the tree's topmost element if it has one; empty for none.
void setLanguage(QPDF& document, const std::string& language);

/// Maps element types that readers of PDF 1.7 do not know to ones that they know. A document without a tree,
/// or with a role map of its own, is not changed.
void mapStructureRoles(QPDF& document);

} // namespace qrv::engine
