#pragma once

// The references in style sheets and style attributes.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace qrv::webarchive {

/// What takes the place of a reference; nothing if it stays. Must not hold quotes, parentheses, backslashes
/// or white space.
using Replacement = std::function<std::optional<std::string>(const std::string& reference)>;

/// Replaces references: url(...), the text of an @import, and those in image sets. All else stays byte for
/// byte; linear time.
std::string withStyleReferences(std::string_view style, const Replacement& replacement);

} // namespace qrv::webarchive
