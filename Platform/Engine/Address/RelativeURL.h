#pragma once

// References as pages and style sheets write them, and the addresses that they mean.

#include <string>
#include <string_view>

namespace qrv::engine {

/// The address that a reference means in a text with this address, to be normalised (ResourceURL.h): it keeps
/// dot segments and spaces. Empty if the reference is relative and the text has no address that others can be
/// relative to ("about:blank").
std::string resolvedURL(std::string_view reference, std::string_view base);

} // namespace qrv::engine
