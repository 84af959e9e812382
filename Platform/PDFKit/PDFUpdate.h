#pragma once

// Changes of a PDF that are appended to the file, whose own bytes stay as they are.

#include "Platform/PDFKit/PDFAttachment.h"
#include "Platform/PDFKit/PDFAttributes.h"
#include "Platform/PDFKit/PDFCatalog.h"
#include "Platform/PDFKit/PDFEnding.h"

namespace qrv {

/// What makes these changes when it follows a file of this length: the new document information, the catalog
/// without a metadata stream that would contradict it, and a cross-reference table of the kind that the file
/// has. Empty without changes.
std::string updateOfPDF(const PDFEnding& ending, std::size_t length,
                        const std::vector<PDFAttributeChange>& changes);

/// The same with additions, handed out in pieces: the attachment is compressed on the way, and never in
/// memory as a whole. Files that are embedded or associated stay so; of two with one name, the new one gets a
/// number.
void writeUpdateOfPDF(const PDFEnding& ending, const PDFCatalog& catalog, std::size_t length,
                      const std::vector<PDFAttributeChange>& changes, const PDFAdditions& additions,
                      const ByteSink& sink);

} // namespace qrv
