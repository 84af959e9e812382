#pragma once

// Makes the engine's response from a stored resource.

#include "Platform/Engine/DevTools/Json.h"
#include "Platform/WebArchive/WebResource.h"

#include <string>

namespace qrv::engine {

struct ResourceRequest {
    std::string url;
    std::string origin;       ///< the request's Origin header; empty without one
    std::string headers = {}; ///< of a preflight: those that it asks permission for
    bool isDocument = false;
};

/// Makes the response headers for `Fetch.fulfillRequest`. Stored headers are not repeated: their policies and
/// encodings do not apply here.
Json responseHeaders(const WebResource& resource, const ResourceRequest& request);

/// Returns the response's Content-Type: the stored type with the stored encoding. A main page of a textual
/// type that the engine would download instead of showing it (style sheets, scripts, tables, data) becomes
/// plain text. Empty if the stored type is invalid; the engine then sniffs the bytes.
std::string contentType(const WebResource& resource, bool isDocument);

} // namespace qrv::engine
