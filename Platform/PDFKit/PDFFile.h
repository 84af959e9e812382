#pragma once

// Whole PDF files: opened, written, looked at. For the units that work on the document itself; what it is
// made of they take from the PDF library, whose headers appear in .cpp files only.

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

/// True when readers will find pages in these bytes, if only after mending damage as they do, and when they
/// will ask for a password. False for anything else and for nil.
bool isReadablePDF(const NSData& bytes);

} // namespace qrv
