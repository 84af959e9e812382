#pragma once

// Opens and judges whole PDF files through the PDF library. A file can make it crash, or take all
// memory: these operations belong into a confined child (see ConfinedPDF.h).

#include "Platform/Foundation/NSData.h"

#include <memory>

class QPDF;

namespace qrv {

/// Opens the document in these bytes, which it keeps alive. Returns null if they are no PDF, or are encrypted
/// or damaged: a repaired file could lose contents when it is written back.
std::shared_ptr<QPDF> openPDF(const NSData& bytes);

/// True when readers will find pages in these bytes, if only after mending damage as they do, and when they
/// will ask for a password. False for anything else and for nil.
bool isReadablePDF(const NSData& bytes);

} // namespace qrv
