#pragma once

// The archive that a PDF was made of, as those want to know it who keep the PDF: as metadata, and as a whole.

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/PDFKit/PDFAttachment.h"

namespace qrv {

struct ConvertedArchive {
    NSData file;
    NSString path;
    NSString address; ///< the stored address of its page
    NSString engine;  ///< see PDFOrigin
};

/// An XMP packet for a PDF with these attributes. The file is read for its hash.
NSData metadataOf(const ConvertedArchive& archive, const NSDictionary& attributes);

/// The file, under its name, with the date of its last change. Where the same archive is to make the same
/// bytes (see sourceDate) it has that date.
PDFAttachment attachmentOf(const ConvertedArchive& archive);

} // namespace qrv
