#pragma once

// Writes a document that was opened and edited through the PDF library. A file can make it crash, or take
// all memory: this belongs into a confined child (see ConfinedPDF.h).

#include "Platform/Foundation/NSData.h"
#include "Platform/PDFKit/PDFEnding.h"
#include "Platform/PDFKit/UnreadObjects.h"

class QPDF;

namespace qrv {

/// Writes what the document refers to: with object streams and a cross-reference stream, not linearised, the
/// same bytes for the same document. Objects keep their numbers, and streams their data as they have it;
/// only what has no filter is compressed. Unread objects are copied. Returns nil if a part of it turns out to
/// be damaged; else `ending`, unless null, becomes that of the result.
NSData serializePDF(QPDF& document, const UnreadObjects& unread = {}, PDFEnding* ending = nullptr);

} // namespace qrv
