#pragma once

// What a renderer's pages need before they are handed out: an exact size, another scale, other link
// addresses.
//
//     PDFPageEdits edits;
//     edits.size = NSSize{612, 3000.5};
//     NSData exact = pdfByApplying(edits, rendered);

#include "Platform/Foundation/NSData.h"

#include <functional>
#include <optional>
#include <string>

namespace qrv {

struct PDFPageEdits {
    /// The size of every page in points, after scaling. The contents keep their place at the top left: what a
    /// page gains or loses is at its bottom and right. Every box of a page becomes {0, 0, width, height}.
    std::optional<NSSize> size;
    /// Enlarges or shrinks pages with everything on them, links and destinations included.
    double scale = 1;
    /// Gives each link's address, once, a new one; a link whose new address is empty leads nowhere. Null
    /// leaves links alone. Must not throw.
    std::function<std::string(const std::string&)> mapLink;
};

/// The document with the edits made. nil for data that is no PDF, is encrypted or damaged, and for sizes and
/// scales that are not finite and positive or lead to a page larger than 1e8 points.
NSData pdfByApplying(const PDFPageEdits& edits, const NSData& pdf);

} // namespace qrv
