#pragma once

// Corrects the outline that a renderer makes of a document's headings. The renderer assembles a title from
// the pieces of text that it draws: at line breaks there is no space; and a heading at the start of a page
// whose glyphs reach above its line is also drawn, and so listed, on the page before.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class QPDF;

namespace qrv::engine {

/// The text with each run of white space as one blank, and none at its end.
std::string onOneLine(const std::string& text);

/// Finds the heading for each title of an outline, in the outline's order.
class HeadingFinder {
public:
    explicit HeadingFinder(const std::vector<std::string>& headings);

    struct Found {
        std::string heading; // with runs of white space collapsed
        bool wasDrawnTwice = false;
        std::size_t index = 0; // in the list
    };

    /// Only considers headings after the one found last.
    std::optional<Found> find(const std::string& title);

private:
    struct Heading {
        std::string text;
        std::u16string withoutBreaks;
    };

    std::vector<Heading> headings_;
    std::size_t next_ = 0;
};

/// Gives the entries the texts of the document's headings (UTF-8, in the document's order). An entry whose
/// heading was drawn on two pages leads to the second. Entries without a heading stay.
void correctOutline(QPDF& document, const std::vector<std::string>& headings);

} // namespace qrv::engine
