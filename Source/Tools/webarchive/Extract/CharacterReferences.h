#pragma once

// The values of attributes as they stand in markup.

#include <string>
#include <string_view>

namespace qrv::webarchive {

/// Replaces the character references that addresses and styles are written with: numbers, and the names amp,
/// lt, gt, quot and apos. Others stay.
std::string withoutReferences(std::string_view value);

/// The value for a place between double quotes.
std::string withReferences(std::string_view value);

} // namespace qrv::webarchive
