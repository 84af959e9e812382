#pragma once

// Which fonts the pages of a PDF file draw with.

#include "Platform/Foundation/NSData.h"

#include <string>
#include <vector>

class QPDF;

namespace qrv {

/// For each page the names of the fonts in its resources, in ascending order and each once, such as
/// "NotoSansThai-Regular": without what marks a font of which a part is stored. A font without a name is left
/// out. Empty for bytes that are no PDF or too much for the limits, which is logged. Read in a confined
/// child.
std::vector<std::vector<std::string>> fontsOfPages(const NSData& bytes);

/// The same of a document that is open. Throws what the PDF library throws.
std::vector<std::vector<std::string>> fontsIn(QPDF& document);

/// For the way out of a child: a line for each name and an empty one at the end of each page; and what was
/// made into that.
NSData listFromFonts(const std::vector<std::vector<std::string>>& pages);
std::vector<std::vector<std::string>> fontsFromList(const NSData& list);

} // namespace qrv
