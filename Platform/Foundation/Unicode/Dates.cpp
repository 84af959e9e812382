#include "Platform/Foundation/Unicode.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <unicode/ucal.h>
#include <unicode/udat.h>

namespace qrv::unicode {

namespace {

/// "GMT+01:00:00". The library's own zones are not those of every TZ.
std::u16string zoneName(long secondsFromGMT) {
    const long distance = std::labs(secondsFromGMT);
    char name[32];
    std::snprintf(name, sizeof name, "GMT%c%02ld:%02ld:%02ld", secondsFromGMT < 0 ? '-' : '+',
                  distance / 3600, distance / 60 % 60, distance % 60);
    return std::u16string(name, name + std::char_traits<char>::length(name));
}

} // namespace

/// The library's formatters are mutable, so each is used by one thread at a time.
struct DatePattern::Formatter {
    ~Formatter() { udat_close(handle); }

    void setZone(long secondsFromGMT) {
        if (zone == secondsFromGMT) return;
        const std::u16string name = zoneName(secondsFromGMT);
        UErrorCode status = U_ZERO_ERROR;
        UCalendar* calendar =
            ucal_open(name.data(), static_cast<int32_t>(name.size()), "en_US_POSIX", UCAL_GREGORIAN, &status);
        if (U_SUCCESS(status)) udat_setCalendar(handle, calendar);
        ucal_close(calendar);
        zone = secondsFromGMT;
    }

    std::mutex mutex;
    UDateFormat* handle = nullptr;
    std::optional<long> zone;
};

DatePattern::DatePattern(std::u16string_view pattern) : formatter_(std::make_unique<Formatter>()) {
    UErrorCode status = U_ZERO_ERROR;
    formatter_->handle = udat_open(UDAT_PATTERN, UDAT_PATTERN, "en_US_POSIX", u"GMT", -1, pattern.data(),
                                   static_cast<int32_t>(pattern.size()), &status);
}

DatePattern::~DatePattern() = default;

std::u16string DatePattern::format(double secondsSince1970, long secondsFromGMT) const {
    // Rounds to the nearest microsecond: binary fractions differ slightly from decimal ones, and .123 must
    // not show as .122.
    const double milliseconds = std::round(secondsSince1970 * 1e6) / 1e3;
    const std::lock_guard lock(formatter_->mutex);
    if (!formatter_->handle) return {};
    formatter_->setZone(secondsFromGMT);
    std::u16string text(64, u'\0');
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = udat_format(formatter_->handle, milliseconds, text.data(),
                                           static_cast<int32_t>(text.size()), nullptr, &status);
        const bool complete = status != U_BUFFER_OVERFLOW_ERROR;
        text.resize(U_SUCCESS(status) || !complete ? static_cast<std::size_t>(length) : 0);
        if (complete) return text;
    }
}

} // namespace qrv::unicode
