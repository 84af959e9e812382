#include "Platform/Foundation/Unicode.h"

#include <array>
#include <cmath>
#include <mutex>
#include <unicode/ucal.h>
#include <unicode/udat.h>

namespace qrv::unicode {

/// The library's formatters are mutable, so each is used by one thread at a time.
struct DatePattern::Formatter {
    ~Formatter() { udat_close(handle); }

    std::mutex mutex;
    UDateFormat* handle = nullptr;
};

DatePattern::DatePattern(std::u16string_view pattern) : formatter_(std::make_unique<Formatter>()) {
    // The machine's current zone; the library's default is the one that it found first.
    UErrorCode status = U_ZERO_ERROR;
    std::array<UChar, 128> zone{};
    const int32_t zoneLength = ucal_getHostTimeZone(zone.data(), zone.size(), &status);
    formatter_->handle = udat_open(UDAT_PATTERN, UDAT_PATTERN, "en_US_POSIX", zone.data(), zoneLength,
                                   pattern.data(), static_cast<int32_t>(pattern.size()), &status);
}

DatePattern::~DatePattern() = default;

std::u16string DatePattern::format(double secondsSince1970) const {
    // Rounds to the nearest microsecond: binary fractions differ slightly from decimal ones, and .123 must
    // not show as .122.
    const double milliseconds = std::round(secondsSince1970 * 1e6) / 1e3;
    const std::lock_guard lock(formatter_->mutex);
    if (!formatter_->handle) return {};
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
