#pragma once

// The hosts of addresses.

#include <optional>
#include <string>
#include <string_view>

namespace qrv::engine {

/// The host as the engine writes it: in lower case, percent-decoded, names of other scripts in their ASCII
/// form ("xn--..."), numbers as IPv4 addresses, IPv6 addresses (in brackets) in their shortest form. Nothing
/// when it is no host.
std::optional<std::string> normalizedHost(std::string_view host);

} // namespace qrv::engine
