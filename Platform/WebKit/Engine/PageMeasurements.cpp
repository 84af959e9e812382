#include "Platform/WebKit/Engine/PageMeasurements.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace qrv::engine {
namespace {

constexpr double minimumView = 16;
constexpr double maximumView = 20000;
// The engine's lengths end at 2^25 px; the document stands below a page as high as the view.
constexpr double maximumLength = 33'000'000;
constexpr std::size_t longestValue = 16384;

double clampedLength(double value, double low, double high) {
    return std::isnan(value) ? low : std::clamp(value, low, high);
}

// Computed values of these properties never hold quotes, braces, semicolons or escapes.
bool isPlainValue(std::string_view text) {
    constexpr std::string_view allowed =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 .,%()+-*/#";
    return !text.empty() && text.size() <= longestValue &&
           text.find_first_not_of(allowed) == std::string_view::npos &&
           text.find("/*") == std::string_view::npos &&
           std::count(text.begin(), text.end(), '(') == std::count(text.begin(), text.end(), ')');
}

void keepPlain(std::string& text, std::string_view initial) {
    if (!isPlainValue(text)) text = initial;
}

} // namespace

PageMeasurements sanitized(PageMeasurements m) {
    m.viewWidth = clampedLength(m.viewWidth, minimumView, maximumView);
    m.viewHeight = clampedLength(m.viewHeight, minimumView, maximumView);
    m.scrollWidth = clampedLength(m.scrollWidth, 0, maximumLength);
    m.scrollHeight = clampedLength(m.scrollHeight, 0, maximumLength);
    for (double* length : {&m.rootBorderTop, &m.rootBorderRight, &m.rootBorderBottom, &m.rootBorderLeft,
                           &m.rootPaddingTop, &m.rootPaddingRight, &m.rootPaddingBottom, &m.rootPaddingLeft,
                           &m.rootWidth, &m.rootHeight, &m.bodyWidth, &m.bodyHeight}) {
        *length = clampedLength(*length, 0, maximumLength);
    }
    for (double* margin : {&m.rootMarginTop, &m.rootMarginBottom, &m.rootMarginLeft, &m.bodyMarginLeft}) {
        *margin = std::isnan(*margin) ? 0 : std::clamp(*margin, -maximumLength, maximumLength);
    }
    keepPlain(m.bodyWritingMode, "horizontal-tb");
    keepPlain(m.bodyDirection, "ltr");
    keepPlain(m.rootDisplay, "block");
    keepPlain(m.canvasImages, "none");
    keepPlain(m.canvasColor, "rgba(0, 0, 0, 0)");
    keepPlain(m.canvasPositionX, "0%");
    keepPlain(m.canvasPositionY, "0%");
    keepPlain(m.canvasSize, "auto");
    keepPlain(m.canvasRepeat, "repeat");
    return m;
}

} // namespace qrv::engine
