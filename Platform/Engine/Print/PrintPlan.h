#pragma once

// How one page is to be printed, and what has to be done to its PDF afterwards. Made by PrintLayout, carried
// out by PageRenderer.

#include "Platform/Foundation/NSRange.h"

#include <string>

namespace qrv::engine {

struct PrintPlan {
    std::string styleSheet;  ///< every declaration important
    std::string imageTarget; ///< selector of the element whose background images are set
    std::string imageSource; ///< "root" or "body": whose images it gets; empty: those it has
    std::string imagesOnTop; ///< images that it gets before those, each with a comma behind it
    double scale = 1;        ///< printToPDF: scale, 0.1 to 2
    std::string pageRanges;  ///< printToPDF: pageRanges; empty for all
    NSSize paper; ///< printToPDF: paperWidth and paperHeight, inches; @page rules set the pages' own sizes
    NSSize page;  ///< exact MediaBox wanted, points
    double shrink = 1; ///< factor by which the printed pages are too large (or, below 1, too small)
    bool usesViewportPage = false;
    bool isStructured = true; ///< printToPDF: generateTaggedPDF, generateDocumentOutline
    /// Sheets do not scroll: sticky boxes stand where they are in the flow, and modal dialogs, which the
    /// engine repeats on every sheet, are boxes fixed to the view, without a backdrop. Those at the end on
    /// which nothing is are left out.
    bool isOnSheets = false;
    /// Nothing in the style sheet is as long as the document, so that a part of it can be printed alone.
    bool isDivisible = false;

    // Where the document is on the printed pages; the engine's destinations do not take it into account.

    double documentLength = 0;     ///< CSS px in the direction in which page follows page
    double viewportPageLength = 0; ///< CSS px of the first page that is not kept
    double pageLength = 0;         ///< CSS px of the document on one page; 0 for documents of vertical text
    double pageMargin = 0;         ///< points
};

} // namespace qrv::engine
