#pragma once

// The normal form of hosts.

#include <optional>
#include <string>
#include <string_view>

namespace qrv::engine {

/// Normalises a host as the engine does: lower case, percent-decoded, names of other scripts in ASCII
/// ("xn--..."), numbers as IPv4 addresses, IPv6 addresses (in brackets) in their shortest form. Nothing if it
/// is no valid host.
std::optional<std::string> normalizedHost(std::string_view host);

} // namespace qrv::engine
