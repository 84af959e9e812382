#pragma once

// What has to be known of a PDF file to change its document information without reading it again: a child
// that has opened or written the file finds it out, and what is appended to the file needs no more (see
// PDFUpdate.h).

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

class QPDF;
class QPDFObjectHandle;

namespace qrv {

struct PDFEnding {
    /// The entries of the document information that are texts, names or dates; a date in an unusual form is
    /// a text. Never nil.
    NSDictionary attributes;
    /// All entries of the document information, in PDF syntax.
    std::vector<std::pair<std::string, std::string>> information;
    /// The object that has the document information, such as "4 0"; empty if there is none.
    std::string informationObject;
    std::string catalogObject;
    /// The catalog without its metadata stream, in PDF syntax; empty if it has none.
    std::string catalogWithoutMetadata;
    /// The entries of the trailer, in PDF syntax, but for what is about the cross-reference table and the
    /// document information.
    std::string trailer;
    /// The largest number of an object, and one more.
    long long size = 0;
    /// Where the file's header is, from which all offsets count; it may have bytes before.
    long long header = 0;
    /// The offset of the last cross-reference table, and whether it is a stream.
    long long table = 0;
    bool hasStream = false;
};

/// What the document and the dictionary of its last trailer say; header and table are left to the caller.
/// Throws what the PDF library throws.
PDFEnding endingOf(QPDF& document, QPDFObjectHandle trailer);

/// The ending of a file that `openPDF` has opened from these bytes. Throws what the PDF library throws.
PDFEnding endingOf(QPDF& document, const NSData& bytes);

/// For the way out of a child: a property list, and what was made into one; nothing for other bytes.
NSData listFromEnding(const PDFEnding& ending);
std::optional<PDFEnding> endingFromList(const NSData& list);

} // namespace qrv
