#pragma once

// Rewrites computed lists of background properties, so that the images of the canvas stay where they were
// when the box that they refer to changes. All lengths are CSS px; a list has one item for each layer,
// separated by commas.

#include <cstddef>
#include <string>
#include <string_view>

namespace qrv::engine {

/// Repeats the list's items until there are `count` of them, or cuts it to that.
std::string cycled(std::string_view list, std::size_t count);

std::size_t itemCount(std::string_view list);

/// One axis of the box that background positions and sizes refer to.
struct BackgroundAxis {
    double start = 0;
    double length = 0;
};

/// Rewrites a background-position-x or -y list for images that stay where they were relative to the axis
/// `from`, although the engine now places them relative to the axis `to`; and moves them all by `shift`.
std::string movedPositions(std::string_view positions, BackgroundAxis from, BackgroundAxis to, double shift);

/// The images of a background, one item for each layer.
struct BackgroundImages {
    std::string_view kinds;  ///< as in "linear-gradient,url"
    std::string_view ratios; ///< width over height; 0 for images that have none or an unknown one
};

/// Rewrites a background-size list for these images in px, as far as it is relative to a box of the given
/// size; gradients without a size of their own get the box's. Images of unknown ratio that cover or fit the
/// box do the same with the new one.
std::string fixedSizes(std::string_view sizes, const BackgroundImages& images, double width, double height);

} // namespace qrv::engine
