#pragma once

// Numbers are read and printed with a decimal point, whatever locale the program around this library has set.

#include <locale.h>

namespace qrv {

/// While it lives, the C functions of this thread follow the plain locale.
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
