#pragma once

// Reads a message in the engine's binary form, which MessageWriter.h describes.

#include "Platform/Engine/DevTools/Json.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace qrv::engine {

/// How long the message that begins with these bytes is; nothing if none begins like this, or they are fewer
/// than messageHead. Any thread.
std::optional<std::size_t> messageSize(std::string_view start);
constexpr std::size_t messageHead = 7;

/// Reads one message, an envelope without anything behind it. Nothing if it is malformed, holds what the
/// engine never sends, or is nested deeper than 512. Text in UTF-16 becomes UTF-8, with U+FFFD for unpaired
/// surrogates; text in UTF-8 is not checked. Numbers that are not finite become null. Data share the
/// message's bytes. Any thread.
std::optional<Json> decodedMessage(const NSData& message);

} // namespace qrv::engine
