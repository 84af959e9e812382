#pragma once

#include "Platform/Engine/Print/PageMeasurements.h"

#include <string>

namespace qrv::engine {

// How to print a page so that it looks as it does on the screen.
//
// The engine lays a document out anew when it prints, and takes viewport units, media queries, percentage
// heights and the initial containing block from the first page. So the first page is made as large as the
// view and stays empty: the whole document is pushed behind it, onto pages of the wanted size, and only those
// are kept.
//
// The order of work, media "screen" emulated and the page's own scripts off throughout:
//   1. set the device metrics to screenView() or paginatedView(), scale factor 1;
//   2. evaluate measuringScript(), make PageMeasurements of its answer;
//   3. make the plan, evaluate applyingScript(plan);
//   4. print with the plan's numbers, preferCSSPageSize and printBackground on, all margins 0;
//   5. "Page range exceeds page count": the document could not be pushed. Make the plain plan, go on at 3.
// The page is not restored afterwards: nothing is done with it once it is printed.
//
// What is left to do on the PDF, for each page, in this order:
//   0. put destinations where they belong, by the scale and the last three numbers;
//   1. shrink other than 1: scale the content and every annotation's rectangle (and quad points, destinations
//   of links)
//      by 1 / shrink about the top left corner of the MediaBox;
//   2. set the MediaBox to pageWidth x pageHeight, keeping its top left corner: [x0, y1 - pageHeight,
//      x0 + pageWidth, y1]. The engine rounds page sizes to 1/300 in, so the box differs by up to 0.24 pt,
//      and by a multiple of it after shrinking; take any other page box away.
// A box above 14,400 pt keeps its true size and gets no UserUnit.
struct PrintPlan {
    std::string styleSheet;  // every declaration important, in a layer of its own
    std::string imageTarget; // selector of the element whose background images are set
    std::string imageSource; // "root" or "body": whose images it gets; empty: those it has
    std::string imagesOnTop; // images that it gets before those, each with a comma behind it
    double scale = 1;        // printToPDF: scale, 0.1 to 2
    std::string pageRanges;  // printToPDF: pageRanges; empty for all
    double paperWidth = 0;   // printToPDF: paperWidth, inches
    double paperHeight = 0;  // printToPDF: paperHeight, inches
    double pageWidth = 0;    // exact MediaBox wanted, points
    double pageHeight = 0;
    double shrink = 1; // factor by which the printed pages are too large (or, below 1, too small)
    bool usesViewportPage = false;
    bool isStructured = true; // printToPDF: generateTaggedPDF, generateDocumentOutline
    // Sheets do not scroll: sticky boxes stand where they are in the flow, and modal dialogs, which the
    // engine repeats on every sheet, are boxes fixed to the view, without a backdrop.
    bool releasesBoxes = false;
    // Where the document is on the printed pages; the engine's destinations do not take it into account.
    double viewportPageLength = 0; // CSS px of the first page that is not kept
    double pageLength = 0;         // CSS px of the document on one page; 0 for documents of vertical text
    double pageMargin = 0;         // points
};

struct LayoutSize {
    double width = 0;
    double height = 0;
};

// The view, in whole CSS px, in which the page is laid out and measured before screenPlan(): the paper, one
// px a point. Paper in points.
LayoutSize screenView(double paperWidth, double paperHeight);

// The same before paginatedPlan(): the paper less the margins, 96 px an inch.
LayoutSize paginatedView(double paperWidth, double paperHeight, double margin);

// One page that holds the whole document as the screen shows it, one CSS px a point. Is
// plainScreenPlan() where the root is not html, and for vertical writing modes.
PrintPlan screenPlan(const PageMeasurements& measured);

// The same without a viewport page: the document is laid out once more in a view as large as itself.
PrintPlan plainScreenPlan(const PageMeasurements& measured);

// Pages of the given paper (points) with the margin on all four sides, the document scaled down to fit their
// width. A margin that is negative or no number counts as 0; one that would leave less than 72 pt in either
// direction is cut to leave 72 pt. Paper below 72 pt or above 14,400 pt is taken as that.
PrintPlan paginatedPlan(const PageMeasurements& measured, double paperWidth, double paperHeight,
                        double margin);

// The same without a viewport page: lengths that depend on the view then follow the page.
PrintPlan plainPaginatedPlan(const PageMeasurements& measured, double paperWidth, double paperHeight,
                             double margin);

} // namespace qrv::engine
