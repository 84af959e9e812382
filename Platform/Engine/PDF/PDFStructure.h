#pragma once

// The structure tree, which tells a document's headings, paragraphs, tables and links from each other, for
// the units of this folder only.

#include <string>

class QPDF;

namespace qrv::engine {

/// Names the document's language, also where the tree's topmost element has one; empty for none.
void setLanguage(QPDF& document, const std::string& language);

/// Says what the kinds of elements stand for that readers of PDF 1.7 do not know. A document without a tree,
/// or with a mapping of its own, stays as it is.
void mapStructureRoles(QPDF& document);

} // namespace qrv::engine
