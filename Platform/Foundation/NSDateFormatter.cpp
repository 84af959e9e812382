#include "Platform/Foundation/NSDateFormatter.h"

#include "Platform/Foundation/Unicode.h"

namespace qrv {

void NSDateFormatter::setDateFormat(const NSString& format) {
    pattern_.reset();
    if (format.length() > 0) pattern_ = std::make_shared<unicode::DatePattern>(format.view());
}

NSString NSDateFormatter::stringFromDate(const NSDate& date) const {
    if (date.isNil()) return {};
    if (!pattern_) return u"";
    return NSString(pattern_->format(date.timeIntervalSinceReferenceDate() + NSTimeIntervalSince1970));
}

} // namespace qrv
