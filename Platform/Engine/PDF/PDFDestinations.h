#pragma once

// Corrects the destinations of links within a document.

#include <map>
#include <string>

class QPDF;

namespace qrv::engine {

/// How a renderer laid the document out on pages, as far as its named destinations ignore it: they assume
/// 0.75 pt per px and pages without margins, and count from the start of a first page that the file does not
/// contain.
struct DestinationLayout {
    double firstPageLength = 0; // of the page that is not in the file, px; 0 if there is none
    double pageLength = 0;      // px of the document per page; 0 leaves the destinations alone
    double unit = 0;            // points per px
    double margin = 0;          // points, at the left and the top of a page
    /// Destinations on the page that is not in the file: px from the start of the document.
    std::map<std::string, double> missing;
};

/// Moves the named destinations to their correct places, and adds the missing ones.
void placeDestinations(QPDF& document, const DestinationLayout& layout);

} // namespace qrv::engine
