#include "Platform/Engine/Print/PageMeasurements.h"

#include "Platform/Engine/DevTools/Json.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace qrv::engine {
namespace {

using M = PageMeasurements;

constexpr double smallestView = 16;
constexpr double largestView = 20'000;
// The engine's page sizes end at 2^25 times 3/4 pt, and a px is printed as a pt.
constexpr double longest = 25'000'000;
constexpr std::size_t longestValue = 16'384;

struct NumberField {
    const char* name;
    double M::*member;
    double low;
    double high;
};

struct TextField {
    const char* name;
    std::string M::*member;
    std::string_view initial;
};

struct FlagField {
    const char* name;
    bool M::*member;
};

constexpr NumberField numberFields[] = {
    {"viewWidth", &M::viewWidth, smallestView, largestView},
    {"viewHeight", &M::viewHeight, smallestView, largestView},
    {"scrollWidth", &M::scrollWidth, 0, longest},
    {"scrollHeight", &M::scrollHeight, 0, longest},
    {"rootZoom", &M::rootZoom, 0.01, 100},
    {"bodyZoom", &M::bodyZoom, 0.01, 100},
    {"rootMarginTop", &M::rootMarginTop, -longest, longest},
    {"rootMarginBottom", &M::rootMarginBottom, -longest, longest},
    {"rootMarginLeft", &M::rootMarginLeft, -longest, longest},
    {"rootBorderTop", &M::rootBorderTop, 0, longest},
    {"rootBorderRight", &M::rootBorderRight, 0, longest},
    {"rootBorderBottom", &M::rootBorderBottom, 0, longest},
    {"rootBorderLeft", &M::rootBorderLeft, 0, longest},
    {"rootPaddingTop", &M::rootPaddingTop, 0, longest},
    {"rootPaddingRight", &M::rootPaddingRight, 0, longest},
    {"rootPaddingBottom", &M::rootPaddingBottom, 0, longest},
    {"rootPaddingLeft", &M::rootPaddingLeft, 0, longest},
    {"rootWidth", &M::rootWidth, 0, longest},
    {"rootHeight", &M::rootHeight, 0, longest},
    {"bodyMarginLeft", &M::bodyMarginLeft, -longest, longest},
    {"bodyWidth", &M::bodyWidth, 0, longest},
    {"bodyHeight", &M::bodyHeight, 0, longest},
    {"structureCost", &M::structureCost, 0, std::numeric_limits<double>::max()},
};

constexpr std::string_view noColor = "rgba(0, 0, 0, 0)";

constexpr TextField textFields[] = {
    {"rootDisplay", &M::rootDisplay, "block"},
    {"bodyWritingMode", &M::bodyWritingMode, "horizontal-tb"},
    {"bodyDirection", &M::bodyDirection, "ltr"},
    {"rootBorderTopColor", &M::rootBorderTopColor, noColor},
    {"rootBorderRightColor", &M::rootBorderRightColor, noColor},
    {"rootBorderBottomColor", &M::rootBorderBottomColor, noColor},
    {"rootBorderLeftColor", &M::rootBorderLeftColor, noColor},
    {"canvasImages", &M::canvasImages, "none"},
    {"canvasRatios", &M::canvasRatios, "0"},
    {"canvasOrigin", &M::canvasOrigin, "padding-box"},
    {"canvasColor", &M::canvasColor, noColor},
    {"canvasPositionX", &M::canvasPositionX, "0%"},
    {"canvasPositionY", &M::canvasPositionY, "0%"},
    {"canvasSize", &M::canvasSize, "auto"},
    {"canvasRepeat", &M::canvasRepeat, "repeat"},
};

constexpr FlagField flagFields[] = {
    {"isQuirky", &M::isQuirky},
    {"rootIsHtml", &M::rootIsHtml},
    {"hasBody", &M::hasBody},
    {"rootHeightIsAuto", &M::rootHeightIsAuto},
    {"rootIsContainer", &M::rootIsContainer},
    {"rootContainsFixed", &M::rootContainsFixed},
    {"rootHasEffect", &M::rootHasEffect},
    {"bodyHeightIsAuto", &M::bodyHeightIsAuto},
    {"bodyOverflowSpreads", &M::bodyOverflowSpreads},
    {"canvasFromBody", &M::canvasFromBody},
    {"canvasHasImage", &M::canvasHasImage},
    {"canvasIsFixed", &M::canvasIsFixed},
};

bool hasBalancedParentheses(std::string_view text) {
    int depth = 0;
    for (char c : text) {
        if (c == '(') ++depth;
        if (c == ')' && --depth < 0) return false;
    }
    return depth == 0;
}

// Computed values of these properties never hold quotes, braces, semicolons or escapes.
bool isPlainValue(std::string_view text) {
    constexpr std::string_view allowed =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 .,%()+-*/#";
    return !text.empty() && text.size() <= longestValue &&
           text.find_first_not_of(allowed) == std::string_view::npos &&
           text.find("/*") == std::string_view::npos && hasBalancedParentheses(text);
}

} // namespace

double documentWidth(const PageMeasurements& measured) {
    return std::max(measured.viewWidth, measured.scrollWidth);
}

double documentHeight(const PageMeasurements& measured) {
    return std::max(measured.viewHeight, measured.scrollHeight);
}

bool runsRightToLeft(const PageMeasurements& measured) {
    return measured.bodyDirection == "rtl";
}

double leftOverflow(const PageMeasurements& measured) {
    return runsRightToLeft(measured) ? documentWidth(measured) - measured.viewWidth : 0;
}

PageMeasurements sanitized(PageMeasurements measurements) {
    for (const auto& field : numberFields) {
        double& value = measurements.*field.member;
        value = std::isnan(value) ? std::max(0.0, field.low) : std::clamp(value, field.low, field.high);
    }
    for (const auto& field : textFields) {
        std::string& value = measurements.*field.member;
        if (!isPlainValue(value)) value = field.initial;
    }
    return measurements;
}

PageMeasurements pageMeasurementsFromJson(const Json& answer) {
    PageMeasurements measurements;
    for (const auto& field : numberFields) {
        measurements.*field.member = answer[field.name].number(measurements.*field.member);
    }
    for (const auto& field : textFields) measurements.*field.member = answer[field.name].string();
    for (const auto& field : flagFields) {
        measurements.*field.member = answer[field.name].boolean(measurements.*field.member);
    }
    return sanitized(measurements);
}

} // namespace qrv::engine
