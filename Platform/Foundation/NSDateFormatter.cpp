#include "Platform/Foundation/NSDateFormatter.h"

#include "Platform/Foundation/PlainDatePattern.h"
#include "Platform/Foundation/Unicode.h"

#include <mutex>

namespace qrv {

struct NSDateFormatter::Pattern {
    explicit Pattern(std::u16string_view pattern) : text(pattern), plain(PlainDatePattern::parse(pattern)) {}

    std::u16string format(double secondsSince1970) const {
        const LocalTime local = localTime(secondsSince1970);
        if (plain && PlainDatePattern::canFormat(local)) return plain->format(local);
        std::call_once(isMade, [this] { full = std::make_unique<unicode::DatePattern>(text); });
        return full->format(secondsSince1970, local.parts.tm_gmtoff);
    }

    const std::u16string text;
    const std::optional<PlainDatePattern> plain;
    mutable std::once_flag isMade;
    mutable std::unique_ptr<const unicode::DatePattern> full;
};

void NSDateFormatter::setDateFormat(const NSString& format) {
    readTimeZone();
    pattern_.reset();
    if (format.length() > 0) pattern_ = std::make_shared<Pattern>(format.view());
}

NSString NSDateFormatter::stringFromDate(const NSDate& date) const {
    if (date.isNil()) return {};
    if (!pattern_) return u"";
    return NSString(pattern_->format(date.timeIntervalSinceReferenceDate() + NSTimeIntervalSince1970));
}

} // namespace qrv
