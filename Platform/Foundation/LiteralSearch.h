#pragma once

// Finding a text in another, unit by unit, in a time that grows with the length of the text only.

#include <string_view>
#include <vector>

namespace qrv {

/// Refers to the needle, which has to live as long as the search does. An empty one is found everywhere.
class LiteralSearch {
public:
    explicit LiteralSearch(std::u16string_view needle);

    /// The first place at or after `from`, or npos.
    std::size_t find(std::u16string_view text, std::size_t from = 0) const;

    /// The same, among the places that `accept` says yes to.
    template <class Accept>
    std::size_t find(std::u16string_view text, std::size_t from, const Accept& accept) const {
        for (std::size_t i = from, matched = 0; i < text.size(); ++i) {
            while (matched > 0 && text[i] != needle_[matched]) matched = borders_[matched - 1];
            if (text[i] == needle_[matched]) ++matched;
            if (matched < needle_.size()) continue;
            if (accept(i + 1 - matched)) return i + 1 - matched;
            matched = borders_[matched - 1];
        }
        return std::u16string_view::npos;
    }

private:
    std::u16string_view needle_;
    /// For each unit of the needle: how much of its start is also the end of what stands up to there.
    std::vector<std::size_t> borders_;
};

} // namespace qrv
