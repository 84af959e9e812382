#pragma once

// The sizes of papers by their names: those of ISO 216 and 269, and of American and older standards.

#include "Platform/Foundation/NSRange.h"

#include <optional>
#include <string_view>

namespace qrv {

/// Returns the size in whole points of a paper such as "a4", "letter" or "Comm10", in capital or small
/// letters, or nothing for an unknown name. The names and sizes are those that Debian's paperconf(1) knows.
/// Any thread.
std::optional<NSSize> paperSizeNamed(std::string_view name);

} // namespace qrv
