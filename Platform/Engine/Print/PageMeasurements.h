#pragma once

#include <string>

namespace qrv::engine {

class Json;

// What the measuring script (PageScripts.h) says of a page, laid out on the screen at the view's size and
// scrolled to its start. Lengths are CSS px. The script's answer is one flat object whose keys are the names
// of these fields.
struct PageMeasurements {
    double viewWidth = 0;
    double viewHeight = 0;
    double scrollWidth = 0; // the scrollable area of the root, overflow included
    double scrollHeight = 0;

    double structureCost =
        0;                 // of a structure tree in the PDF: the squares of the elements' numbers of children
    bool isQuirky = false; // no document type: html and body fill the view, percentage heights refer to it
    bool rootIsHtml = false;
    bool hasBody = false;
    std::string rootDisplay;
    double rootZoom = 1;
    double bodyZoom = 1;         // without the root's
    std::string bodyWritingMode; // the root's without a body
    std::string bodyDirection;

    // The root's box: margins as used, position offsets included; content size as used.
    double rootMarginTop = 0;
    double rootMarginBottom = 0;
    double rootMarginLeft = 0;
    double rootBorderTop = 0;
    double rootBorderRight = 0;
    double rootBorderBottom = 0;
    double rootBorderLeft = 0;
    std::string rootBorderTopColor;
    std::string rootBorderRightColor;
    std::string rootBorderBottomColor;
    std::string rootBorderLeftColor;
    double rootPaddingTop = 0;
    double rootPaddingRight = 0;
    double rootPaddingBottom = 0;
    double rootPaddingLeft = 0;
    double rootWidth = 0;
    double rootHeight = 0;
    bool rootHeightIsAuto = true;
    bool rootIsContainer = false;   // absolutely positioned boxes refer to the root, not to the view
    bool rootContainsFixed = false; // fixed boxes do, too
    bool rootHasEffect = false;     // a filter, mask or the like, which works on the canvas; there is a head

    double bodyMarginLeft = 0; // from the root's content edge, as used
    double bodyWidth = 0;      // content size, as used
    double bodyHeight = 0;
    bool bodyHeightIsAuto = true;

    bool bodyOverflowSpreads = false; // the viewport took the body's overflow

    // The background of the canvas, taken from the root or, where that has none, from the body. The lists are
    // computed values, one item a layer; the images themselves stay in the page.
    bool canvasFromBody = false;
    bool canvasHasImage = false;
    std::string canvasImages;   // the kinds alone, such as "linear-gradient,url"
    std::string canvasRatios;   // their widths over their heights, 0 where there is none
    std::string canvasOrigin;   // the same box for all
    bool canvasIsFixed = false; // some image is attached to the view
    std::string canvasColor;
    std::string canvasPositionX;
    std::string canvasPositionY;
    std::string canvasSize;
    std::string canvasRepeat;
};

// All that is seen of the document by scrolling, the view at least.
double documentWidth(const PageMeasurements& measured);
double documentHeight(const PageMeasurements& measured);

// The body's direction is the document's.
bool runsRightToLeft(const PageMeasurements& measured);

// How far the document reaches to the left of the view.
double leftOverflow(const PageMeasurements& measured);

// The measurements with every number finite and within what the engine can lay out, and every text that goes
// into a style sheet replaced by its initial value unless it is a plain CSS value. Pages are hostile.
PageMeasurements sanitized(PageMeasurements measurements);

// The measuring script's answer, sanitized. What is missing or of another kind has its initial value.
PageMeasurements pageMeasurementsFromJson(const Json& answer);

} // namespace qrv::engine
