#include "Platform/Engine/Archive/ResourceResponse.h"

#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Engine/Address/URLText.h"
#include "Platform/Foundation/Base64.h"

#include <algorithm>
#include <initializer_list>

namespace qrv::engine {

namespace {

/// The engine ends the connection at a message of 100 MiB; Base64 makes four bytes of three, and the rest of
/// the message needs a little.
constexpr std::size_t maximumBody = std::size_t{74} << 20;

bool isTokenCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("!#$%&'*+-.^_`|~/:").find(c) != std::string_view::npos;
}

/// Types and encodings come from the archive: removes what could begin another header, value or parameter,
/// and what could make the message too long for the engine.
std::string headerSafe(const NSString& text) {
    constexpr std::size_t longest = 127;
    std::string safe = text.utf8();
    safe.resize(std::min(safe.find(';'), safe.size()));
    std::erase_if(safe, [](char c) { return !isTokenCharacter(c); });
    return safe.size() > longest ? std::string() : safe;
}

bool isOneOf(std::string_view type, std::initializer_list<std::string_view> types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

/// Whether the engine would download the text or show it in its own way.
bool isShownAsText(std::string_view type) {
    if (type.starts_with("text/")) return !isOneOf(type, {"text/html", "text/xml", "text/xsl"});
    for (const std::string_view ending : {"json", "javascript", "ecmascript", "yaml"}) {
        if (type.starts_with("application/") && type.ends_with(ending)) return true;
    }
    return isOneOf(type,
                   {"application/sql", "application/toml", "application/x-sh", "application/x-httpd-php",
                    "application/x-perl", "application/x-tex", "application/x-latex",
                    "application/typescript", "application/x-subrip", "message/rfc822"});
}

Json header(const char* name, const std::string& value) {
    return Json::object({{"name", name}, {"value", value}});
}

} // namespace

std::string contentType(const WebResource& resource, bool isDocument) {
    std::string type = lowered(headerSafe(resource.MIMEType()));
    if (isDocument && isShownAsText(type)) type = "text/plain";
    const std::string encoding = headerSafe(resource.textEncodingName());
    return type.empty() || encoding.empty() ? type : type + "; charset=" + encoding;
}

Json responseHeaders(const WebResource& resource, const ResourceRequest& request) {
    std::vector<Json> headers;
    if (const std::string type = contentType(resource, request.isDocument); !type.empty()) {
        headers.push_back(header("Content-Type", type));
    }
    // Fonts, modules and fetched data from other origins were allowed when the page was saved.
    headers.push_back(header("Access-Control-Allow-Origin", request.origin.empty() ? "*" : request.origin));
    if (!request.origin.empty()) headers.push_back(header("Access-Control-Allow-Credentials", "true"));
    if (!request.headers.empty()) {
        headers.push_back(header("Access-Control-Allow-Headers", request.headers));
    }
    // Otherwise an http frame in an https page is blocked before it is requested.
    if (request.isDocument && schemeOf(request.url) == "https") {
        headers.push_back(header("Content-Security-Policy", "upgrade-insecure-requests"));
    }
    return Json::array(headers);
}

std::optional<std::string> responseBody(const NSData& data) {
    if (data.length() > maximumBody) return std::nullopt;
    return base64Encode(data.bytes());
}

} // namespace qrv::engine
