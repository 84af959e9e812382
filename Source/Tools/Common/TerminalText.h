#pragma once

// Text from archives and arguments as it may go to a terminal: it cannot move the cursor, change colours,
// ring or turn the line around.

#include <cstddef>
#include <string>
#include <string_view>

namespace qrv {

/// The text in UTF-8 with U+FFFD for each control or formatting character, line breaks among them, and for
/// bytes that are no UTF-8. Zero-width joiners and non-joiners stay.
std::string shown(std::string_view text);

/// The same, cut to these columns: what is longer ends in "…".
std::string shownWithin(std::string_view text, std::size_t columns);

/// The columns that a shown text takes on a terminal.
std::size_t columnsOf(std::string_view shown);

} // namespace qrv
