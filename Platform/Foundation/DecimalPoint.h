#pragma once

// Reads and prints numbers with a decimal point, whatever locale the surrounding program has set.

#include <locale.h>

namespace qrv {

/// Switches the C functions of the calling thread to the "C" locale for its lifetime.
class DecimalPoint {
public:
    DecimalPoint() : before_(::uselocale(plainLocale())) {}

    DecimalPoint(const DecimalPoint&) = delete;
    DecimalPoint& operator=(const DecimalPoint&) = delete;

    ~DecimalPoint() { ::uselocale(before_); }

private:
    static locale_t plainLocale() {
        static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return plain;
    }

    locale_t before_;
};

} // namespace qrv
