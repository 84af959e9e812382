#pragma once

// The places that links within a document lead to.

#include <map>
#include <string>

class QPDF;

namespace qrv::engine {

/// How a renderer laid the document out on its pages, as far as it did not think of it when it wrote the
/// document's named destinations: it takes a px for 0.75 pt, pages for free of margins, and counts from the
/// start of a first page that the file does not hold.
struct DestinationLayout {
    double firstPageLength = 0; // of the page that is not there, px; 0 when there was none
    double pageLength = 0;      // px of the document on one page; 0: the destinations stay as they are
    double unit = 0;            // points a px
    double margin = 0;          // points at the left and the top of a page
    /// Destinations that were on the page that is not there: px from the start of the document.
    std::map<std::string, double> missing;
};

/// Puts the named destinations where the document has them, and adds the missing ones.
void placeDestinations(QPDF& document, const DestinationLayout& layout);

} // namespace qrv::engine
