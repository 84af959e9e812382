#include "Platform/Foundation/LiteralSearch.h"

namespace qrv {

// Up to this length the plain search, which may look at each unit once for every unit of the needle, is
// faster.
constexpr std::size_t shortNeedle = 16;

LiteralSearch::LiteralSearch(std::u16string_view needle) : needle_(needle) {
    if (needle.size() <= shortNeedle) return;
    borders_.resize(needle.size(), 0);
    for (std::size_t i = 1, matched = 0; i < needle.size(); ++i) {
        while (matched > 0 && needle[i] != needle[matched]) matched = borders_[matched - 1];
        if (needle[i] == needle[matched]) ++matched;
        borders_[i] = matched;
    }
}

std::size_t LiteralSearch::find(std::u16string_view text, std::size_t from) const {
    if (borders_.empty()) return text.find(needle_, from);
    for (std::size_t i = from, matched = 0; i < text.size(); ++i) {
        while (matched > 0 && text[i] != needle_[matched]) matched = borders_[matched - 1];
        if (text[i] == needle_[matched]) ++matched;
        if (matched == needle_.size()) return i + 1 - matched;
    }
    return std::u16string_view::npos;
}

} // namespace qrv
