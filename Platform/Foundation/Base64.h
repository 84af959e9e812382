#pragma once

// Bytes as text of 64 letters (RFC 4648, with the letters "+" and "/").

#include <optional>
#include <string>
#include <string_view>

namespace qrv {

/// With padding, without line breaks.
std::string base64Encode(std::string_view bytes);

/// White space is passed over and the padding may be missing; nullopt for any other character that does not
/// belong, for padding before the end and for a last group of one letter.
std::optional<std::string> base64Decode(std::string_view text);

} // namespace qrv
