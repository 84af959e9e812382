#pragma once

// Writes a message in the engine's binary form.
//
// That is CBOR (RFC 8949): each map and each list is without a count, and in an envelope, which is tag 24 and
// a byte string whose length has 32 bits; bytes are a byte string behind tag 22. Chromium's source describes
// it in third_party/inspector_protocol/crdtp/cbor.h.

#include "Platform/Engine/DevTools/Json.h"

#include <vector>

namespace qrv::engine {

/// The message, an object, in pieces that follow each other: large data are pieces of their own, which share
/// the bytes. Empty if the engine could not read it, since a length does not fit. Any thread.
std::vector<NSData> encodedMessage(const Json& message);

} // namespace qrv::engine
