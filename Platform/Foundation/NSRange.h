#pragma once

// Ranges of UTF-16 units or bytes, and the geometry of pages: sizes and rectangles in points (1/72 inch).

#include "Platform/Foundation/Export.h"

#include <cstddef>
#include <limits>

namespace qrv {

class NSString;

/// "Not found", the platform's largest signed integer.
inline constexpr std::size_t NSNotFound = std::numeric_limits<std::ptrdiff_t>::max();

struct QRV_EXPORT NSRange {
    std::size_t location = 0;
    std::size_t length = 0;
    friend bool operator==(const NSRange&, const NSRange&) = default;
};

struct QRV_EXPORT NSPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const NSPoint&, const NSPoint&) = default;
};

struct QRV_EXPORT NSSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const NSSize&, const NSSize&) = default;
};

struct QRV_EXPORT NSRect {
    NSPoint origin;
    NSSize size;

    bool isEmpty() const { return !(size.width > 0 && size.height > 0); }

    friend bool operator==(const NSRect&, const NSRect&) = default;
};

/// "{location, length}"
QRV_EXPORT NSString NSStringFromRange(NSRange range);
/// "{x, y}"
QRV_EXPORT NSString NSStringFromPoint(NSPoint point);
/// "{width, height}"
QRV_EXPORT NSString NSStringFromSize(NSSize size);
/// "{{x, y}, {width, height}}"
QRV_EXPORT NSString NSStringFromRect(NSRect rect);
/// Reads two numbers anywhere in the text, width first. A missing number is 0; nil gives a zero size.
QRV_EXPORT NSSize NSSizeFromString(const NSString& text);

} // namespace qrv
