#pragma once

// The document information of a PDF: how its entries are read and written. What takes a file's bytes belongs
// into a confined child (see ConfinedPDF.h).

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"

#include <string>
#include <vector>

namespace qrv {

struct PDFAttributeChange {
    enum class Kind { removal, text, date };

    std::string name; ///< with the slash
    Kind kind = Kind::removal;
    std::string value; ///< UTF-8 of a text, PDF syntax of a date
};

/// Returns the changes that turn the present attributes into the wanted ones. Raises
/// NSInvalidArgumentException for values that are neither NSString nor NSDate (of the years 0 to 9999) and
/// for keys that are no NSString.
std::vector<PDFAttributeChange> changesOfAttributes(const NSDictionary& present, const NSDictionary& wanted);

/// The entries of the document information that are texts, names or dates; a date in an unusual form is
/// returned as text. nil where `openPDF` refuses the file.
NSDictionary attributesOfPDF(const NSData& pdf);

/// Returns the file with these changes, if there are any, and then without the metadata stream, which would
/// contradict them. nil where `openPDF` or `serializePDF` refuse the file.
NSData pdfByChangingAttributes(const NSData& pdf, const std::vector<PDFAttributeChange>& changes);

} // namespace qrv
