#pragma once

// Ranges of UTF-16 units or bytes, and the geometry of pages: sizes and rectangles in points (1/72 inch).

#include <cstddef>
#include <limits>

namespace qrv {

class NSString;

/// "Not found", the platform's largest signed integer.
inline constexpr std::size_t NSNotFound = std::numeric_limits<std::ptrdiff_t>::max();

struct NSRange {
    std::size_t location = 0;
    std::size_t length = 0;
    friend bool operator==(const NSRange&, const NSRange&) = default;
};

struct NSPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const NSPoint&, const NSPoint&) = default;
};

struct NSSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const NSSize&, const NSSize&) = default;
};

struct NSRect {
    NSPoint origin;
    NSSize size;

    bool isEmpty() const { return !(size.width > 0 && size.height > 0); }

    friend bool operator==(const NSRect&, const NSRect&) = default;
};

/// "{location, length}"
NSString NSStringFromRange(NSRange range);
/// "{x, y}"
NSString NSStringFromPoint(NSPoint point);
/// "{width, height}"
NSString NSStringFromSize(NSSize size);
/// "{{x, y}, {width, height}}"
NSString NSStringFromRect(NSRect rect);
/// Reads two numbers anywhere in the text, width first. A missing number is 0; nil gives a zero size.
NSSize NSSizeFromString(const NSString& text);

} // namespace qrv
