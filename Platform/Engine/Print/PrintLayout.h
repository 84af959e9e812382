#pragma once

// How to print a page so that it looks as it does on the screen.
//
// The engine lays a document out anew when it prints, and takes viewport units, percentage heights and the
// initial containing block from the first page. So the first page is made as large as the view and stays
// empty: the whole document is pushed behind it, onto pages of the wanted size, and only those are kept.
//
// The order of work, with the media type "screen" emulated and the page's own scripts off throughout:
//   1. set the device metrics to screenView() or paginatedView(), scale factor 1;
//   2. have everything stand still (standStill.js), measure (measure.js), and read the answer as
//   PageMeasurements;
//   3. make the plan and apply it (applyPrintStyle.js, and releaseBoxes.js where the plan says so);
//   4. print with the plan's numbers, preferCSSPageSize and printBackground on, all margins 0;
//   5. "Page range exceeds page count": the document could not be pushed. Make the plain plan, go on at 3.
// The page is not restored afterwards: nothing is done with it once it is printed.
//
// What is left to do on the PDF, for each page, in this order:
//   1. put destinations where they belong, by the scale and the plan's last three numbers;
//   2. shrink other than 1: scale the content and every annotation's rectangle (and quad points, destinations
//   of links)
//      by 1 / shrink about the top left corner of the MediaBox;
//   3. set the MediaBox to the plan's page, keeping its top left corner. The engine rounds page sizes to
//   1/300 in, so
//      the box differs by up to 0.24 pt, and by a multiple of it after shrinking; take any other page box
//      away.
// A box above 14,400 pt keeps its true size and gets no UserUnit.
//
// All functions are pure. Paper and margins are in points.

#include "Platform/Engine/Print/PageMeasurements.h"
#include "Platform/Engine/Print/PrintPlan.h"

namespace qrv::engine {

/// The view, in whole CSS px, in which a page is laid out and measured before screenPlan(): the paper, one px
/// a point.
NSSize screenView(NSSize paper);

/// The same before paginatedPlan(): the paper less the margins, 96 px an inch.
NSSize paginatedView(NSSize paper, double margin);

/// One page that holds the whole document as the screen shows it, one CSS px a point. Is plainScreenPlan()
/// where the root is not html, and for vertical writing modes.
PrintPlan screenPlan(const PageMeasurements& measured);

/// The same without a viewport page: the document is laid out once more in a view as large as itself.
PrintPlan plainScreenPlan(const PageMeasurements& measured);

/// Pages of the given paper with the margin on all four sides, the document scaled down to fit their width. A
/// margin that is negative or no number counts as 0; one that would leave less than 72 pt in either direction
/// is cut to leave 72 pt. Paper below 72 pt or above 14,400 pt is taken as that.
PrintPlan paginatedPlan(const PageMeasurements& measured, NSSize paper, double margin);

/// The same without a viewport page: lengths that depend on the view then follow the page.
PrintPlan plainPaginatedPlan(const PageMeasurements& measured, NSSize paper, double margin);

} // namespace qrv::engine
