#pragma once

// Edits the structure tree, which marks a document's headings, paragraphs, tables and links.

#include <string>

class QPDF;

namespace qrv::engine {

/// Sets the document's language, also in the tree's topmost element if it has one; empty for none.
void setLanguage(QPDF& document, const std::string& language);

/// Maps element types that readers of PDF 1.7 do not know to ones that they know. A document without a tree,
/// or with a role map of its own, is not changed.
void mapStructureRoles(QPDF& document);

} // namespace qrv::engine
