#pragma once

// How a stored resource is answered to the engine.

#include "Platform/Engine/DevTools/Json.h"
#include "Platform/WebArchive/WebResource.h"

#include <optional>
#include <string>

namespace qrv::engine {

struct ResourceRequest {
    std::string url;
    std::string origin;       ///< the request's Origin header; empty without one
    std::string headers = {}; ///< that a request to come wants to have, where this one asks for leave
    bool isDocument = false;
};

/// The headers of the answer, as `Fetch.fulfillRequest` takes them. Nothing of the stored response is
/// repeated: its policies and encodings were meant for another road.
Json responseHeaders(const WebResource& resource, const ResourceRequest& request);

/// The Content-Type under which a resource is answered: the stored type with the stored encoding. A main page
/// in a kind of text that the engine would rather save than show (style sheets, scripts, tables, data)
/// becomes plain text. Empty when the stored type is none: then the engine looks at the bytes.
std::string contentType(const WebResource& resource, bool isDocument);

/// Base64 of the bytes. Nothing when the message that carries it would be longer than the engine takes.
std::optional<std::string> responseBody(const NSData& data);

} // namespace qrv::engine
