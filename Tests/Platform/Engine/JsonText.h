#pragma once

// Values of the engine's messages as JSON text, in which tests are easier to read.

#include "Platform/Engine/DevTools/Json.h"

#include <string>
#include <string_view>

namespace qrv::engine {

/// The value of a text that is known to be JSON; throws when it is none.
Json parseJson(std::string_view text);

/// Data are written in Base64.
std::string jsonText(const Json& value);

} // namespace qrv::engine
