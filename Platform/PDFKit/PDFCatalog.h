#pragma once

// What the root of a PDF's objects says. Only who adds a file or metadata to a PDF needs all of it: it is not
// kept with the file's ending, since a large document has many named destinations in it.

#include "Platform/Foundation/NSData.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

class QPDF;

namespace qrv {

struct PDFCatalog {
    /// The entries, in PDF syntax.
    std::map<std::string, std::string> entries;
    /// The entries of its name dictionary, in PDF syntax, but for that of the files.
    std::map<std::string, std::string> names;
    /// The dictionaries of the files that are embedded, in PDF syntax, by name: bytes, in the order of a
    /// name tree. What is damaged in their tree is left out.
    std::map<std::string, std::string> files;
    /// The dictionaries of the files that are associated with the document.
    std::vector<std::string> associatedFiles;

    bool operator==(const PDFCatalog&) const = default;
};

/// Nothing for a catalog that cannot be replaced: it is no object of its own, or damage shows when it is read
/// with what belongs to it. Throws what the PDF library throws.
std::optional<PDFCatalog> catalogOf(QPDF& document);

/// For the way out of a child: a property list, and what was made into one; nothing for other bytes.
NSData listFromCatalog(const PDFCatalog& catalog);
std::optional<PDFCatalog> catalogFromList(const NSData& data);

/// Reads it in a confined child; nothing also where `openPDF` refuses the file, or it is too much for the
/// child.
std::optional<PDFCatalog> catalogOfPDF(const NSData& bytes);

} // namespace qrv
