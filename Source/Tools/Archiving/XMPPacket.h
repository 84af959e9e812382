#pragma once

// What a PDF says of its origin, as XMP metadata (ISO 16684-1): what archivists look for in it, and programs
// that know nothing of its attributes.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"

#include <string>

namespace qrv {

/// The namespace of the properties that no standard has.
inline constexpr char Web2PDFNamespace[] = "http://ns.quillvane.org/web2pdf/1.0/";

struct PDFOrigin {
    /// Those that the PDF has in its document information, with the same meaning.
    NSDictionary attributes;
    /// The stored address of the page.
    NSString source;
    /// Of the archive's file, in hexadecimal digits.
    std::string archiveSHA256;
    /// Name and version of the engine that drew the PDF; nil for one that was stored.
    NSString engine;
    NSDate converted;
};

/// The packet, in UTF-8. What is nil or empty is left out. Well-formed whatever the texts are: U+FFFD stands
/// for characters that XML does not have, and for unpaired surrogates.
NSData xmpPacketOf(const PDFOrigin& origin);

} // namespace qrv
