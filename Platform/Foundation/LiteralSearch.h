#pragma once

// Substring search by UTF-16 units in linear time.

#include <string_view>
#include <vector>

namespace qrv {

/// Keeps a reference to the needle, which must outlive the search. An empty needle is found everywhere.
class LiteralSearch {
public:
    explicit LiteralSearch(std::u16string_view needle);

    /// Returns the first occurrence at or after `from`, or npos.
    std::size_t find(std::u16string_view text, std::size_t from = 0) const;

    /// Returns the first occurrence that `accept` agrees to.
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
    /// For each unit of the needle, the length of the longest proper prefix that is also a suffix up to that
    /// unit.
    std::vector<std::size_t> borders_;
};

} // namespace qrv
