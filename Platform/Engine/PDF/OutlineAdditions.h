#pragma once

// Adds headings to an outline that a renderer has made of others.

#include <cstddef>
#include <string>
#include <vector>

class QPDF;

namespace qrv::engine {

/// A heading that the outline may have: its text (UTF-8) and its level, 1 being the outermost.
struct OutlineHeading {
    std::string text;
    int level = 1;
};

struct OutlineAddition {
    OutlineHeading heading;
    std::size_t after = 0; ///< how many of the outline's own headings come before it
    std::size_t page = 0;  ///< where it leads to, points from the page's lower left
    double x = 0;
    double y = 0;
};

/// Adds entries, which are in the document's order, between those of the outline's own headings. Every entry
/// is then below the last one before it that has a lower level, also when nothing is added.
void addToOutline(QPDF& document, const std::vector<OutlineHeading>& own,
                  const std::vector<OutlineAddition>& additions);

} // namespace qrv::engine
