#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVComparisons.h"

namespace qrv {

NSComparisonResult qrvCompareForDisplay(const NSString& self, const NSString& other) {
    return self.compare_options(other, NSCaseInsensitiveSearch | kCFCompareLocalized | NSNumericSearch);
}

NSComparisonResult qrvCompareLength(const NSString& self, const NSString& other) {
    if (self.length() < other.length()) return NSOrderedAscending;
    return self.length() > other.length() ? NSOrderedDescending : NSOrderedSame;
}

} // namespace qrv
