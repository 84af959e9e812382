#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qrv::engine {

// As many items as asked for: those of the list, from the start again where it ends.
std::string cycled(std::string_view list, std::size_t count);

std::size_t itemCount(std::string_view list);

// One axis of the box that background positions and sizes refer to, px.
struct BackgroundAxis {
    double start = 0;
    double length = 0;
};

// A computed background-position-x or -y list for images that shall appear where they did relative to the
// axis `from`, when the engine places them relative to the axis `to`; and all moved on by `shift`.
std::string movedPositions(std::string_view positions, BackgroundAxis from, BackgroundAxis to, double shift);

// The images of a background, one item a layer.
struct BackgroundImages {
    std::string_view kinds;  // as in "linear-gradient,url"
    std::string_view ratios; // width over height; 0 for images that have none or an unknown one
};

// A computed background-size list for the same images: whatever is relative to the box, gradients without a
// size of their own included, becomes px. Images of unknown ratio that cover or fit the box go on doing so
// with the new one.
std::string fixedSizes(std::string_view sizes, const BackgroundImages& images, double width, double height);

} // namespace qrv::engine
