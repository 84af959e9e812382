#pragma once

// The document information of a PDF: how its entries are read and written. What is read of a file's objects
// belongs into a confined child (see ConfinedPDF.h).

#include "Platform/Foundation/NSDictionary.h"

#include <string>
#include <vector>

class QPDFObjectHandle;

namespace qrv {

struct PDFAttributeChange {
    enum class Kind { removal, text, date };

    std::string name; ///< in PDF syntax, with the slash
    Kind kind = Kind::removal;
    std::string value; ///< UTF-8 of a text, PDF syntax of a date
};

/// Returns the changes that turn the present attributes into the wanted ones. Raises
/// NSInvalidArgumentException for values that are neither NSString nor NSDate (of the years 0 to 9999) and
/// for keys that are no NSString.
std::vector<PDFAttributeChange> changesOfAttributes(const NSDictionary& present, const NSDictionary& wanted);

/// The entries of the document information that are texts, names or dates; a date in an unusual form is
/// returned as text. Empty for what is no dictionary. Throws what the PDF library throws.
NSDictionary attributesIn(QPDFObjectHandle information);

/// The new value in PDF syntax.
std::string syntaxOf(const PDFAttributeChange& change);

} // namespace qrv
