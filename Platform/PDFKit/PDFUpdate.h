#pragma once

// Changes of a PDF's document information that are appended to the file, whose own bytes stay as they are.

#include "Platform/PDFKit/PDFAttributes.h"
#include "Platform/PDFKit/PDFEnding.h"

namespace qrv {

/// What makes these changes when it follows a file of this length: the new document information, the catalog
/// without a metadata stream that would contradict it, and a cross-reference table of the kind that the file
/// has. Empty without changes.
std::string updateOfPDF(const PDFEnding& ending, std::size_t length,
                        const std::vector<PDFAttributeChange>& changes);

} // namespace qrv
