#pragma once

// Edits of a rendered PDF before it is delivered: exact page size, scale, links, destinations, outline.
//
//     PDFPageEdits edits;
//     edits.size = NSSize{612, 3000.5};
//     NSData exact = confinedPDFByApplying(edits, rendered);

#include "Platform/Engine/PDF/PDFDestinations.h"
#include "Platform/Engine/PDF/PDFFrames.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qrv {
struct PDFEnding;
}

namespace qrv::engine {

struct PDFPart {
    NSData pdf;
    /// As DestinationLayout has them, from the start of the part.
    std::map<std::string, double> missingDestinations;
};

struct PDFPageEdits {
    /// What follows in a document that was printed in parts. Its outline then needs `frames`, which have the
    /// levels of the headings.
    std::vector<PDFPart> furtherParts;
    /// The size of every page in points, after scaling. The contents stay at the top left; pages grow or
    /// shrink at the bottom and right. Every box of a page becomes {0, 0, width, height}.
    std::optional<NSSize> size;
    /// Scales pages with everything on them, links and destinations included.
    double scale = 1;
    /// A print ends with the last page that shows something other than the page's own background.
    bool removesEmptySheetsAtEnd = false;
    /// Maps the address of each link, once; a link that is mapped to an empty address is removed. Null leaves
    /// links alone. Must not throw.
    std::function<std::string(const std::string&)> mapLink;
    /// The correct places of named destinations, which are moved first.
    DestinationLayout destinations;
    /// When the document was made and last changed, instead of the time of printing; nil leaves that.
    NSDate date;
    /// The document's language, a tag such as "de-CH", instead of the renderer's guess; empty for none.
    std::optional<std::string> language;
    /// The headings' texts (UTF-8, in the document's order), which replace the titles of matching outline
    /// entries: the renderer's titles lack spaces at line breaks.
    std::vector<std::string> headings;
    /// The document and its frames, of which renderers know no headings and no targets of links.
    std::vector<PDFFrame> frames;
    /// Whether the headings of frames are to be in the outline.
    bool hasOutline = true;
};

/// Returns the edited document, with structure roles for readers that do not know PDF 2.0, with the usual
/// characters for glyphs that stand for several, with masks and translucent patterns that readers draw alike,
/// and within the limits of common readers. nil for data that is no PDF, is encrypted or damaged, and for
/// sizes and scales that are not finite and positive or give a page larger than 1e8 points. Adds what the log
/// should say to `notes`, a line each, and tells the result's ending; null drops either. What pages draw can
/// make the PDF library crash, or take all memory.
NSData pdfByApplying(const PDFPageEdits& edits, const NSData& pdf, std::string* notes = nullptr,
                     PDFEnding* ending = nullptr);

/// Does the same in a confined child (see ConfinedPDF.h), and logs the notes. nil also for a document that is
/// too much for its limits, which is logged.
NSData confinedPDFByApplying(const PDFPageEdits& edits, const NSData& pdf);

} // namespace qrv::engine
