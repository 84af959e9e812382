#include "Platform/Foundation/LiteralSearch.h"

namespace qrv {

LiteralSearch::LiteralSearch(std::u16string_view needle) : needle_(needle), borders_(needle.size(), 0) {
    for (std::size_t i = 1, matched = 0; i < needle.size(); ++i) {
        while (matched > 0 && needle[i] != needle[matched]) matched = borders_[matched - 1];
        if (needle[i] == needle[matched]) ++matched;
        borders_[i] = matched;
    }
}

std::size_t LiteralSearch::find(std::u16string_view text, std::size_t from) const {
    // For a short needle the plain search is faster, though it may examine each unit once per unit of the
    // needle.
    constexpr std::size_t shortNeedle = 16;
    if (needle_.size() <= shortNeedle) return text.find(needle_, from);
    return find(text, from, [](std::size_t) { return true; });
}

} // namespace qrv
