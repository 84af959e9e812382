#pragma once

// Formats dates by a Unicode date pattern ("yyyy-MM-dd HH:mm:ss.SSS"), in the local time zone and the
// Gregorian calendar, with ASCII digits whatever the user's language. Local time is that of the C library,
// whatever form TZ has; a field for the zone itself shows its distance from GMT.

#include "Platform/Foundation/NSDate.h"

#include <memory>

namespace qrv {

/// Copies share the pattern. `stringFromDate` may be called from any thread, `setDateFormat` only while no
/// other thread uses the formatter.
class QRV_EXPORT NSDateFormatter {
public:
    /// Has no pattern yet: every date gives the empty text.
    NSDateFormatter() = default;

    // - setDateFormat:
    /// A nil or empty pattern gives empty texts. A letter without a meaning prints nothing, nor do the fields
    /// after it. A change of TZ counts from this call on, for the whole process.
    void setDateFormat(const NSString& format);
    // - stringFromDate:
    /// A nil date gives nil.
    NSString stringFromDate(const NSDate& date) const;
    /// Appends what stringFromDate gives, in UTF-8.
    void appendUTF8(std::string& out, double secondsSinceReferenceDate) const;

private:
    struct Pattern;

    std::shared_ptr<const Pattern> pattern_;
};

} // namespace qrv
