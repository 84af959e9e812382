#pragma once

// The lengths of a page on the screen and on paper.

namespace qrv::engine {

inline constexpr double pixelsPerInch = 96;
inline constexpr double pointsPerInch = 72;
inline constexpr double pixelsPerPoint = pixelsPerInch / pointsPerInch;
inline constexpr double pointsPerPixel = pointsPerInch / pixelsPerInch;

} // namespace qrv::engine
