#pragma once

// Bytes in the messages of the engine.

#include "Platform/Foundation/NSData.h"

#include <optional>
#include <string>
#include <string_view>

namespace qrv::engine {

std::string encodeBase64(std::string_view bytes);

/// Nothing when the text is not padded base64.
std::optional<NSData> decodeBase64(std::string_view text);

} // namespace qrv::engine
