#pragma once

// The outline that a renderer makes of a document's headings, and what is wrong with it; for the units of
// this folder only. The renderer puts a title together from the pieces of text that it draws: where a line
// was broken there is no space, and a heading at the start of a page whose letters reach above their line is
// drawn, and told, on the page before as well.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class QPDF;

namespace qrv::engine {

/// Finds the heading that each title of an outline was made of, title by title in the outline's order.
class HeadingFinder {
public:
    explicit HeadingFinder(const std::vector<std::string>& headings);

    struct Found {
        std::string heading; // runs of white space as one blank
        bool wasDrawnTwice = false;
    };

    /// Headings before the one that was found last are not considered.
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
/// heading was drawn at the end of one page and the start of the next leads to the latter. What was made of
/// none of the headings stays as it is.
void correctOutline(QPDF& document, const std::vector<std::string>& headings);

} // namespace qrv::engine
