#include "Platform/Engine/Archive/ResourceResponse.h"

#include "Platform/Engine/Address/MIMEType.h"
#include "Platform/Engine/Address/ResourceURL.h"

namespace qrv::engine {

namespace {

Json header(const char* name, const std::string& value) {
    return Json::object({{"name", name}, {"value", value}});
}

/// A sandbox in which the engine itself refuses forms, whatever their address, and lets no frame send the
/// whole window elsewhere.
std::string policyOfDocument(const std::string& url) {
    std::string policy = "sandbox allow-scripts allow-same-origin allow-popups allow-modals allow-downloads "
                         "allow-pointer-lock allow-orientation-lock allow-presentation";
    // Otherwise an http frame in an https page is blocked before it is requested.
    if (schemeOf(url) == "https") policy += "; upgrade-insecure-requests";
    return policy;
}

} // namespace

std::string contentType(const WebResource& resource, bool isDocument) {
    const MIMEType stored(resource.MIMEType().utf8());
    const std::string type = isDocument && stored.isShownAsText() ? "text/plain" : stored.text();
    const std::string encoding = headerToken(resource.textEncodingName().utf8());
    return type.empty() || encoding.empty() ? type : type + "; charset=" + encoding;
}

Json responseHeaders(const WebResource& resource, const ResourceRequest& request) {
    std::vector<Json> headers;
    const std::string type = contentType(resource, request.isDocument);
    if (!type.empty()) headers.push_back(header("Content-Type", type));
    // One control character would make a download of a text.
    if (request.isDocument && MIMEType(type).text() == "text/plain") {
        headers.push_back(header("X-Content-Type-Options", "nosniff"));
    }
    // Fonts, modules and fetched data from other origins were allowed when the page was saved.
    headers.push_back(header("Access-Control-Allow-Origin", request.origin.empty() ? "*" : request.origin));
    if (!request.origin.empty()) headers.push_back(header("Access-Control-Allow-Credentials", "true"));
    if (!request.headers.empty()) {
        headers.push_back(header("Access-Control-Allow-Headers", request.headers));
    }
    if (request.isDocument) {
        headers.push_back(header("Content-Security-Policy", policyOfDocument(request.url)));
    }
    return Json::array(headers);
}

} // namespace qrv::engine
