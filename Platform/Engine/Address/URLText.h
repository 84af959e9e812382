#pragma once

// Case and percent-encoding of address text.

#include <string>
#include <string_view>

namespace qrv::engine {

/// Converts ASCII letters to lower case.
std::string lowered(std::string_view text);

/// Percent-encodes every byte that an address must not contain, as NSURL does; existing escapes stay.
std::string percentEscaped(std::string_view text);

/// Percent-decodes; malformed escapes stay.
std::string percentDecoded(std::string_view text);

} // namespace qrv::engine
