#pragma once

// What the measuring script says of a page that is laid out on the screen at the view's size and scrolled to
// its start. Lengths are CSS px; texts are computed values of CSS.

#include "Platform/Foundation/NSRange.h"

#include <string>
#include <vector>

namespace qrv::engine {

class Json;

/// One value for each side of a box.
template <class Value>
struct Sides {
    Value top{};
    Value right{};
    Value bottom{};
    Value left{};

    bool operator==(const Sides&) const = default;
};

using Edges = Sides<double>;

inline constexpr char noColor[] = "rgba(0, 0, 0, 0)";

/// The box of the root element. Margins are as used, position offsets included.
struct RootMeasurements {
    bool isHtml = false;
    std::string display = "block";
    double zoom = 1;
    double marginTop = 0;
    double marginBottom = 0;
    double marginLeft = 0;
    Edges border;
    Sides<std::string> borderColor{noColor, noColor, noColor, noColor};
    Edges padding;
    double width = 0; ///< of the content, as used
    double height = 0;
    bool heightIsAuto = true;
    bool isContainer = false;   ///< absolutely positioned boxes refer to the root, not to the view
    bool containsFixed = false; ///< fixed boxes do, too
    bool hasEffect = false;     ///< a filter, mask or the like, which works on the canvas; there is a head
};

/// The box of the body; the root's where there is no body.
struct BodyMeasurements {
    bool exists = false;
    double zoom = 1; ///< without the root's
    std::string writingMode = "horizontal-tb";
    std::string direction = "ltr";
    double marginLeft = 0; ///< from the root's content edge, as used
    double width = 0;      ///< of the content, as used
    double height = 0;
    bool heightIsAuto = true;
    bool overflowSpreads = false; ///< the view took the body's overflow
};

/// The background of the canvas, taken from the root or, where that has none, from the body. The lists have
/// one item for each layer; the images themselves stay in the page.
struct CanvasMeasurements {
    bool isBody = false; ///< it is the body's background
    bool hasImage = false;
    std::string images = "none";        ///< the kinds alone, such as "linear-gradient,url"
    std::string ratios = "0";           ///< their widths over their heights, 0 where there is none
    std::string origin = "padding-box"; ///< the same box for all
    bool isFixed = false;               ///< some image is attached to the view
    std::string color = noColor;
    std::string positionX = "0%";
    std::string positionY = "0%";
    std::string size = "auto";
    std::string repeat = "repeat";
};

struct PageMeasurements {
    NSSize view;
    NSSize scroll;         ///< the scrollable area of the root, overflow included
    bool isQuirky = false; ///< no document type: html and body fill the view, percentage heights refer to it
    /// Of a structure tree in the PDF: the squares of the elements' numbers of children, added up.
    double structureCost = 0;
    RootMeasurements root;
    BodyMeasurements body;
    CanvasMeasurements canvas;
};

/// All that is seen of the document by scrolling; the view at least.
double documentWidth(const PageMeasurements& measured);
double documentHeight(const PageMeasurements& measured);

/// The body's direction is the document's.
bool runsRightToLeft(const PageMeasurements& measured);

/// How far the document reaches to the left of the view.
double leftOverflow(const PageMeasurements& measured);

/// Reads the measuring script's answer. Pages are hostile: numbers are brought within what the engine can lay
/// out, and a text that goes into a style sheet keeps its initial value unless it is a plain CSS value; so
/// does whatever is missing or of another kind.
PageMeasurements pageMeasurementsFromJson(const Json& answer);

/// The names of the fields that are read, such as "root.border.top".
std::vector<std::string> pageMeasurementNames();

} // namespace qrv::engine
