#include "Platform/Engine/Print/CanvasBackground.h"

#include "Platform/Engine/Print/StyleText.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <vector>

namespace qrv::engine {
namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

// The items of a list, separators inside parentheses not counted. Never empty.
std::vector<std::string_view> split(std::string_view list, char separator) {
    std::vector<std::string_view> items;
    std::size_t start = 0;
    int depth = 0;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i] == '(') ++depth;
        if (list[i] == ')') --depth;
        if (list[i] != separator || depth != 0) continue;
        items.push_back(trimmed(list.substr(start, i - start)));
        start = i + 1;
    }
    items.push_back(trimmed(list.substr(start)));
    return items;
}

double leadingNumber(std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// Where the number starts that stands before a percent sign; at the sign where there is none.
std::size_t numberStart(std::string_view text, std::size_t percent) {
    constexpr std::string_view digits = "0123456789.-";
    auto before = text.substr(0, percent).find_last_not_of(digits);
    return before == std::string_view::npos ? 0 : before + 1;
}

// The share of the free space in a position: what stands before its percent sign.
double freeShare(std::string_view position) {
    auto percent = position.find('%');
    if (percent == std::string_view::npos) return 0;
    return leadingNumber(position.substr(numberStart(position, percent))) / 100;
}

std::string movedPosition(std::string_view position, BackgroundAxis from, BackgroundAxis to, double shift) {
    std::string value(position);
    auto space = position.find(' ');
    auto edge = position.substr(0, space);
    bool countsFromEnd = edge == "right" || edge == "bottom";
    if (countsFromEnd || edge == "left" || edge == "top") {
        auto offset = space == std::string_view::npos ? std::string_view("0px") : position.substr(space + 1);
        value = (countsFromEnd ? "100% - " : "0% + ") + std::string(offset);
    }
    double distance = from.start - to.start + shift - freeShare(value) * (to.length - from.length);
    return "calc(" + value + " + " + pixels(distance) + ")";
}

// The length with every percentage in px.
std::string withoutPercentages(std::string_view length, double whole) {
    std::string result;
    for (auto percent = length.find('%'); percent != std::string_view::npos; percent = length.find('%')) {
        auto start = numberStart(length, percent);
        result += length.substr(0, start);
        result += pixels(whole * leadingNumber(length.substr(start)) / 100);
        length.remove_prefix(percent + 1);
    }
    return result.append(length);
}

std::string sizeThatFits(bool covers, double ratio, double width, double height) {
    bool takesWidth = (width > height * ratio) == covers;
    return takesWidth ? pixels(width) + " " + pixels(width / ratio)
                      : pixels(height * ratio) + " " + pixels(height);
}

std::string fixedSize(std::string_view size, bool isGradient, double ratio, double width, double height) {
    bool isKeyword = size == "cover" || size == "contain";
    if (isKeyword && ratio > 0) return sizeThatFits(size == "cover", ratio, width, height);
    if (isKeyword) return isGradient ? pixels(width) + " " + pixels(height) : std::string(size);
    auto parts = split(size, ' ');
    parts.resize(2, "auto");
    std::string result;
    for (double whole : {width, height}) {
        auto part = parts[result.empty() ? 0 : 1];
        if (!result.empty()) result += ' ';
        result += isGradient && part == "auto" ? pixels(whole) : withoutPercentages(part, whole);
    }
    return result;
}

} // namespace

std::size_t itemCount(std::string_view list) {
    return split(list, ',').size();
}

std::string cycled(std::string_view list, std::size_t count) {
    auto items = split(list, ',');
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) result += ',';
        result += items[i % items.size()];
    }
    return result;
}

std::string movedPositions(std::string_view positions, BackgroundAxis from, BackgroundAxis to, double shift) {
    std::string result;
    for (auto position : split(positions, ',')) {
        if (!result.empty()) result += ',';
        result += movedPosition(position, from, to, shift);
    }
    return result;
}

std::string fixedSizes(std::string_view sizes, const BackgroundImages& images, double width, double height) {
    auto perLayer = split(sizes, ',');
    auto ratios = split(images.ratios, ',');
    std::string result;
    std::size_t layer = 0;
    for (auto kind : split(images.kinds, ',')) {
        if (layer > 0) result += ',';
        double ratio = layer < ratios.size() ? leadingNumber(ratios[layer]) : 0;
        result +=
            fixedSize(perLayer[layer % perLayer.size()], kind.ends_with("gradient"), ratio, width, height);
        ++layer;
    }
    return result;
}

} // namespace qrv::engine
