#include "Platform/Engine/Print/StyleText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace qrv::engine {
namespace {

constexpr std::array<std::string_view, 16> marginBoxes = {
    "@top-left-corner",     "@top-left",     "@top-center",    "@top-right",
    "@top-right-corner",    "@right-top",    "@right-middle",  "@right-bottom",
    "@bottom-right-corner", "@bottom-right", "@bottom-center", "@bottom-left",
    "@bottom-left-corner",  "@left-bottom",  "@left-middle",   "@left-top"};

} // namespace

// A thousandth is finer than the engine's own 1/64 px.
std::string number(double value) {
    constexpr double largest = 1e15; // the engine cuts lengths off far below
    value = std::isnan(value) ? 0 : std::clamp(value, -largest, largest);
    std::array<char, 64> buffer{};
    auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 3);
    std::string text(buffer.data(), result.ptr);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

std::string pixels(double length) {
    return number(length) + "px";
}

std::string points(double length) {
    return number(length) + "pt";
}

StyleRule::StyleRule(std::string_view selector) : selector_(selector) {}

void StyleRule::add(std::string_view property, std::string_view value) {
    declarations_.append(property).append(":").append(value).append("!important;");
}

void StyleRule::addNested(const StyleRule& rule) {
    declarations_ += rule.text();
}

std::string StyleRule::text() const {
    return selector_ + "{" + declarations_ + "}";
}

StyleRule pageRule(std::string_view name, std::string_view width, std::string_view height,
                   std::string_view margin) {
    StyleRule rule("@page " + std::string(name));
    rule.add("size", std::string(width) + " " + std::string(height));
    rule.add("margin", margin);
    rule.add("padding", "0");
    rule.add("border", "none");
    rule.add("background", "none");
    rule.add("page-orientation", "upright");
    for (auto box : marginBoxes) {
        StyleRule empty(box);
        empty.add("content", "none");
        rule.addNested(empty);
    }
    return rule;
}

StyleSheet::StyleSheet() {
    StyleRule unnamed("*");
    unnamed.add("page", "auto");
    add(unnamed);
    // What changes now is printed as it is in the end.
    StyleRule still("*,::before,::after");
    still.add("transition", "none");
    add(still);
    // The view that fixed backgrounds refer to is the first page, and nothing of them is drawn elsewhere.
    // Controls lose the looks that the system gives them when a style says anything of their background.
    StyleRule scrolling(":not(input,button,select,textarea,progress,meter),::before,::after");
    scrolling.add("background-attachment", "scroll");
    add(scrolling);
}

void StyleSheet::add(const StyleRule& rule) {
    rules_ += rule.text();
}

std::string StyleSheet::text() const {
    return rules_;
}

} // namespace qrv::engine
