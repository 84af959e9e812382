#pragma once

// Finds the tags and attributes of a page, HTML or XML, where they stand in its text. It makes no tree:
// whoever changes a page leaves everything else as it is, byte for byte.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qrv::engine {

/// A part of the text: [start, end).
struct TextRange {
    std::size_t start = 0;
    std::size_t end = 0;

    std::string_view in(std::string_view text) const { return text.substr(start, end - start); }
};

struct MarkupAttribute {
    TextRange name;
    /// Without the quotes; nothing for an attribute without one.
    std::optional<TextRange> value;
    /// With name and quotes.
    TextRange whole;
};

struct MarkupTag {
    std::string name; ///< in lower case
    TextRange nameRange;
    std::vector<MarkupAttribute> attributes;
    /// What stands between the tag and the end of an element that holds text only, such as a style element;
    /// empty for others.
    TextRange text;
};

/// Gives out the start tags of a text from first to last; comments and what only looks like tags in elements
/// that hold text are passed. For encodings that are supersets of ASCII; linear time.
class MarkupReader {
public:
    explicit MarkupReader(std::string_view text) : text_(text) {}

    /// Nothing at the end.
    std::optional<MarkupTag> next();

private:
    MarkupTag readTag();
    std::optional<MarkupAttribute> readAttribute();
    TextRange readValue();
    std::size_t endOfElement(std::string_view name) const;
    std::size_t find(std::string_view what) const;
    std::size_t findFirstOf(std::string_view what, std::size_t from) const;
    std::size_t findFirstNotOf(std::string_view what, std::size_t from) const;

    std::string_view text_;
    std::size_t at_ = 0;
};

} // namespace qrv::engine
