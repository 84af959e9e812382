#pragma once

// Formats dates by a Unicode date pattern ("yyyy-MM-dd HH:mm:ss.SSS"), in the local time zone and the
// Gregorian calendar, with ASCII digits whatever the user's language.

#include "Platform/Foundation/NSDate.h"

#include <memory>

namespace qrv {

namespace unicode {
class DatePattern;
}

/// Copies share the pattern. `stringFromDate` may be called from any thread, `setDateFormat` only while no
/// other thread uses the formatter.
class NSDateFormatter {
public:
    /// Has no pattern yet: every date gives the empty text.
    NSDateFormatter() = default;

    // - setDateFormat:
    /// A nil or empty pattern gives empty texts. A letter without a meaning prints nothing, nor do the fields
    /// after it. The local time zone is that of the moment of this call.
    void setDateFormat(const NSString& format);
    // - stringFromDate:
    /// A nil date gives nil.
    NSString stringFromDate(const NSDate& date) const;

private:
    std::shared_ptr<const unicode::DatePattern> pattern_;
};

} // namespace qrv
