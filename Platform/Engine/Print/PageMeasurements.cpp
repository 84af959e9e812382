#include "Platform/Engine/Print/PageMeasurements.h"

#include "Platform/Engine/DevTools/Json.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>
#include <utility>

namespace qrv::engine {

namespace {

struct Bounds {
    double low;
    double high;
};

constexpr Bounds viewLength{16, 20'000};
// The engine's page sizes end at 2^25 times 3/4 pt, and a px is printed as a pt.
constexpr double longest = 25'000'000;
constexpr Bounds length{0, longest};
constexpr Bounds signedLength{-longest, longest};
constexpr Bounds zoomFactor{0.01, 100};
constexpr Bounds anyAmount{0, std::numeric_limits<double>::max()};

constexpr std::size_t longestValue = 16'384;

bool hasBalancedParentheses(std::string_view text) {
    int depth = 0;
    for (const char c : text) {
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

/// Reads each field from the answer.
class FieldReader {
public:
    explicit FieldReader(Json answer) : answer_(std::move(answer)) {}

    FieldReader group(const char* name) const { return FieldReader(answer_[name]); }

    void number(const char* name, double& value, Bounds bounds) const {
        value = std::clamp(answer_[name].number(value), bounds.low, bounds.high);
    }

    void text(const char* name, std::string& value) const {
        if (const std::string_view given = answer_[name].stringView(); isPlainValue(given)) value = given;
    }

    void flag(const char* name, bool& value) const { value = answer_[name].boolean(value); }

private:
    Json answer_;
};

/// Writes down each field's name.
class NameCollector {
public:
    explicit NameCollector(std::vector<std::string>& names, std::string prefix = {})
        : names_(names), prefix_(std::move(prefix)) {}

    NameCollector group(const char* name) const { return NameCollector(names_, prefix_ + name + "."); }

    void number(const char* name, const double& /*value*/, Bounds /*bounds*/) const { add(name); }

    void text(const char* name, const std::string& /*value*/) const { add(name); }

    void flag(const char* name, const bool& /*value*/) const { add(name); }

private:
    void add(const char* name) const { names_.push_back(prefix_ + name); }

    std::vector<std::string>& names_;
    std::string prefix_;
};

// The list of fields. The bindings name every member of a structure: one more does not compile until it is
// listed.

template <class Visitor>
void visitSize(const Visitor& visitor, NSSize& size, Bounds bounds) {
    auto& [width, height] = size;
    visitor.number("width", width, bounds);
    visitor.number("height", height, bounds);
}

template <class Value, class Visit>
void visitSides(Sides<Value>& sides, const Visit& visit) {
    auto& [top, right, bottom, left] = sides;
    visit("top", top);
    visit("right", right);
    visit("bottom", bottom);
    visit("left", left);
}

template <class Visitor>
void visitEdges(const Visitor& visitor, Edges& edges) {
    visitSides(edges, [&](const char* name, double& edge) { visitor.number(name, edge, length); });
}

template <class Visitor>
void visitColors(const Visitor& visitor, Sides<std::string>& colors) {
    visitSides(colors, [&](const char* name, std::string& color) { visitor.text(name, color); });
}

template <class Visitor>
void visitRoot(const Visitor& visitor, RootMeasurements& root) {
    auto& [isHtml, display, zoom, marginTop, marginBottom, marginLeft, border, borderColor, padding, width,
           height, heightIsAuto, isContainer, containsFixed, hasEffect] = root;
    visitor.flag("isHtml", isHtml);
    visitor.text("display", display);
    visitor.number("zoom", zoom, zoomFactor);
    visitor.number("marginTop", marginTop, signedLength);
    visitor.number("marginBottom", marginBottom, signedLength);
    visitor.number("marginLeft", marginLeft, signedLength);
    visitEdges(visitor.group("border"), border);
    visitColors(visitor.group("borderColor"), borderColor);
    visitEdges(visitor.group("padding"), padding);
    visitor.number("width", width, length);
    visitor.number("height", height, length);
    visitor.flag("heightIsAuto", heightIsAuto);
    visitor.flag("isContainer", isContainer);
    visitor.flag("containsFixed", containsFixed);
    visitor.flag("hasEffect", hasEffect);
}

template <class Visitor>
void visitBody(const Visitor& visitor, BodyMeasurements& body) {
    auto& [exists, zoom, writingMode, direction, marginLeft, width, height, heightIsAuto, overflowSpreads] =
        body;
    visitor.flag("exists", exists);
    visitor.number("zoom", zoom, zoomFactor);
    visitor.text("writingMode", writingMode);
    visitor.text("direction", direction);
    visitor.number("marginLeft", marginLeft, signedLength);
    visitor.number("width", width, length);
    visitor.number("height", height, length);
    visitor.flag("heightIsAuto", heightIsAuto);
    visitor.flag("overflowSpreads", overflowSpreads);
}

template <class Visitor>
void visitCanvas(const Visitor& visitor, CanvasMeasurements& canvas) {
    auto& [isBody, hasImage, images, ratios, origin, isFixed, color, positionX, positionY, size, repeat] =
        canvas;
    visitor.flag("isBody", isBody);
    visitor.flag("hasImage", hasImage);
    visitor.text("images", images);
    visitor.text("ratios", ratios);
    visitor.text("origin", origin);
    visitor.flag("isFixed", isFixed);
    visitor.text("color", color);
    visitor.text("positionX", positionX);
    visitor.text("positionY", positionY);
    visitor.text("size", size);
    visitor.text("repeat", repeat);
}

template <class Visitor>
void visitPage(const Visitor& visitor, PageMeasurements& page) {
    auto& [view, scroll, isQuirky, structureCost, root, body, canvas] = page;
    visitSize(visitor.group("view"), view, viewLength);
    visitSize(visitor.group("scroll"), scroll, length);
    visitor.flag("isQuirky", isQuirky);
    visitor.number("structureCost", structureCost, anyAmount);
    visitRoot(visitor.group("root"), root);
    visitBody(visitor.group("body"), body);
    visitCanvas(visitor.group("canvas"), canvas);
}

} // namespace

double documentWidth(const PageMeasurements& measured) {
    return std::max(measured.view.width, measured.scroll.width);
}

double documentHeight(const PageMeasurements& measured) {
    return std::max(measured.view.height, measured.scroll.height);
}

bool runsRightToLeft(const PageMeasurements& measured) {
    return measured.body.direction == "rtl";
}

double leftOverflow(const PageMeasurements& measured) {
    return runsRightToLeft(measured) ? documentWidth(measured) - measured.view.width : 0;
}

PageMeasurements pageMeasurementsFromJson(const Json& answer) {
    PageMeasurements measurements;
    visitPage(FieldReader(answer), measurements);
    return measurements;
}

std::vector<std::string> pageMeasurementNames() {
    std::vector<std::string> names;
    PageMeasurements measurements;
    visitPage(NameCollector(names), measurements);
    return names;
}

} // namespace qrv::engine
