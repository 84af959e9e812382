#pragma once

// Dates as text, by a pattern of the Unicode locale data ("yyyy-MM-dd HH:mm:ss.SSS"), in the local time zone
// and the Gregorian calendar, with ASCII digits whatever the user's language.

#include "Platform/Foundation/NSDate.h"

#include <memory>

namespace qrv {

namespace unicode {
class DatePattern;
}

/// Copies share the pattern. `stringFromDate` may be called from any thread; `setDateFormat` needs the
/// owner's care, as any change does.
class NSDateFormatter {
public:
    /// Without a pattern yet: every date gives the empty text.
    NSDateFormatter() = default;

    // - setDateFormat:
    /// nil and the empty pattern give empty texts; a letter without a meaning prints nothing, nor do the
    /// fields after it. Takes the local time zone as it is now.
    void setDateFormat(const NSString& format);
    // - stringFromDate:
    /// nil for nil.
    NSString stringFromDate(const NSDate& date) const;

private:
    std::shared_ptr<const unicode::DatePattern> pattern_;
};

} // namespace qrv
