#pragma once

// Reading and writing whole PDF files through the PDF library, for the units of this folder only. The
// library's headers appear in this folder's .cpp files and nowhere else.

#include "Platform/Foundation/NSData.h"

#include <memory>

class QPDF;

namespace qrv {

/// The document in these bytes, which it keeps alive. Null when they are no PDF, are encrypted, or are
/// damaged: guessing at the contents of a damaged file could lose some of them when it is written back.
std::shared_ptr<QPDF> openPDF(const NSData& bytes);

/// The document as a file: compressed, with object streams, not linearised, and the same bytes for the same
/// document. nil when a part of it turned out to be damaged.
NSData serializePDF(QPDF& document);

} // namespace qrv
