#pragma once

// Base64 encoding and decoding, with the standard alphabet ("+" and "/").

#include <optional>
#include <string>
#include <string_view>

namespace qrv {

/// Encodes with padding and without line breaks.
std::string base64Encode(std::string_view bytes);

/// Decodes; white space is skipped, and the padding may be missing. Returns nullopt for any character
/// outside the alphabet, for padding before the end and for a last group of one letter.
std::optional<std::string> base64Decode(std::string_view text);

} // namespace qrv
