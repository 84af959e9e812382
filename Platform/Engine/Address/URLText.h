#pragma once

// Letters and escapes in the text of addresses.

#include <string>
#include <string_view>

namespace qrv::engine {

/// ASCII letters only.
std::string lowered(std::string_view text);

/// Every byte that no address may hold is escaped, as NSURL does it; what is escaped stays.
std::string percentEscaped(std::string_view text);

/// Malformed escapes stay.
std::string percentDecoded(std::string_view text);

} // namespace qrv::engine
