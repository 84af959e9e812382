#pragma once

// Finding a text in another, unit by unit, in a time that grows with the length of the text only.

#include <string_view>
#include <vector>

namespace qrv {

/// Refers to the needle, which has to live as long as the search does. An empty one is found
/// everywhere.
class LiteralSearch {
public:
    explicit LiteralSearch(std::u16string_view needle);

    /// The first place at or after `from`, or npos.
    std::size_t find(std::u16string_view text, std::size_t from = 0) const;

private:
    std::u16string_view needle_;
    /// How much of the needle still matches when the unit after i of them does not; empty for a short needle.
    std::vector<std::size_t> borders_;
};

} // namespace qrv
