#pragma once

// What a renderer's pages need before they are handed out: an exact size, another scale, other link
// addresses.
//
//     PDFPageEdits edits;
//     edits.size = NSSize{612, 3000.5};
//     NSData exact = pdfByApplying(edits, rendered);

#include "Platform/Engine/PDF/PDFDestinations.h"
#include "Platform/Foundation/NSData.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qrv::engine {

struct PDFPageEdits {
    /// The size of every page in points, after scaling. The contents keep their place at the top left: what a
    /// page gains or loses is at its bottom and right. Every box of a page becomes {0, 0, width, height}.
    std::optional<NSSize> size;
    /// Enlarges or shrinks pages with everything on them, links and destinations included.
    double scale = 1;
    /// Gives each link's address, once, a new one; a link whose new address is empty leads nowhere. Null
    /// leaves links alone. Must not throw.
    std::function<std::string(const std::string&)> mapLink;
    /// Where the named destinations belong. They are put there first.
    DestinationLayout destinations;
    /// The document's language, a tag such as "de-CH", in place of what the renderer took it for; empty for
    /// none.
    std::optional<std::string> language;
    /// The texts of the headings that the outline was made of (UTF-8, in the document's order). Its entries,
    /// which lose spaces where lines are broken, get these texts where they can be told to belong together.
    std::vector<std::string> headings;
};

/// The document with the edits made, with a structure that programs understand which know no PDF 2.0, and
/// with the usual characters for glyphs that stand for several. nil for data that is no PDF, is encrypted or
/// damaged, and for sizes and scales that are not finite and positive or lead to a page larger than 1e8
/// points.
NSData pdfByApplying(const PDFPageEdits& edits, const NSData& pdf);

} // namespace qrv::engine
