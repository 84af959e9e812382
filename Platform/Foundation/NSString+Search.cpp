// Searching and comparing with options.

#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Unicode.h"

namespace qrv {

namespace {

unicode::Indifference indifference(unsigned long options) {
    return {(options & NSCaseInsensitiveSearch) != 0, (options & NSDiacriticInsensitiveSearch) != 0,
            (options & NSWidthInsensitiveSearch) != 0};
}

NSRange literalRange(const NSString& text, const NSString& other, bool anchored) {
    if (!anchored) return text.rangeOfString(other);
    return text.hasPrefix(other) ? NSRange{0, other.length()} : NSRange{NSNotFound, 0};
}

} // namespace

NSRange NSString::rangeOfString_options(const NSString& other, unsigned long options) const {
    const bool anchored = (options & NSAnchoredSearch) != 0;
    if (options & NSLiteralSearch) return literalRange(*this, other, anchored);
    const auto found = unicode::find(view(), other.view(), indifference(options), anchored);
    return found ? NSRange{found->start, found->end - found->start} : NSRange{NSNotFound, 0};
}

NSComparisonResult NSString::compare_options(const NSString& other, unsigned long options) const {
    const bool numeric = (options & NSNumericSearch) != 0;
    const bool byLanguage = numeric || (options & kCFCompareLocalized) != 0;
    const int order = byLanguage
                          ? unicode::compareLocalized(view(), other.view(),
                                                      (options & NSCaseInsensitiveSearch) != 0, numeric)
                          : unicode::compare(view(), other.view(), indifference(options));
    return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
}

NSComparisonResult NSString::caseInsensitiveCompare(const NSString& other) const {
    return compare_options(other, NSCaseInsensitiveSearch);
}

} // namespace qrv
