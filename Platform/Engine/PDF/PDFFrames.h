#pragma once

// Adds what a renderer leaves out of frames: their headings in the outline, and the places that links within
// them lead to. Each frame is covered by a link, the marker, by which its place on the pages is known; a
// frame that is cut by the ends of pages has one on each.

#include "Platform/Engine/PDF/OutlineAdditions.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

class QPDF;

namespace qrv::engine {

/// The start of the addresses that markers lead to; the frame's path follows.
inline constexpr char frameMarker[] = "web2pdf-frame:";

struct PDFFrame {
    /// From the top left of the frame's view, px.
    struct Place {
        double left = 0;
        double top = 0;
    };

    struct Heading {
        OutlineHeading heading;
        std::optional<Place> place; ///< nothing when it is not seen
    };

    /// A heading, or a frame by its number in this one.
    using Content = std::variant<Heading, std::size_t>;

    std::string
        path; ///< numbers with points between them, from the outermost frame on; empty for the document
    double width = 0;              ///< of the frame's view, px
    std::vector<Content> contents; ///< in the order of the document
    /// What the frame's inner links lead to, by the fragment of their address.
    std::map<std::string, std::optional<Place>> anchors;
};

/// Removes the markers, has links within frames lead to their places, and puts the headings of frames that
/// are seen into the outline, if there is to be one: where the frame stands. The outline's own titles must be
/// those of the document's headings.
void addFrames(QPDF& document, const std::vector<PDFFrame>& frames, bool hasOutline);

} // namespace qrv::engine
