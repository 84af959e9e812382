#include "Platform/WebKit/Engine/ResourceResponse.h"

#include "Platform/Foundation/Base64.h"
#include "Platform/WebKit/Engine/ResourceURL.h"
#include "Platform/WebKit/Engine/URLText.h"

#include <algorithm>
#include <array>

namespace qrv::engine {

namespace {

// The engine ends the connection at a message of 100 MiB; base64 makes four bytes of three, and the rest of
// the message needs a little.
constexpr std::size_t maximumBody = std::size_t{74} << 20;

bool isTokenCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("!#$%&'*+-.^_`|~/:").find(c) != std::string_view::npos;
}

/// Types and encodings come from the archive: nothing that could begin another header, value or parameter may
/// pass, nor what would make the message longer than the engine takes.
std::string headerSafe(const NSString& text) {
    constexpr std::size_t longest = 127;
    std::string safe = text.utf8();
    safe.resize(std::min(safe.find(';'), safe.size()));
    std::erase_if(safe, [](char c) { return !isTokenCharacter(c); });
    return safe.size() > longest ? std::string() : safe;
}

bool isShownAsText(const std::string& type) {
    constexpr std::array<std::string_view, 9> types{
        "text/css",        "text/csv",         "text/javascript",          "application/javascript",
        "text/ecmascript", "application/json", "application/x-javascript", "application/ecmascript",
        "text/x-markdown"};
    return std::find(types.begin(), types.end(), type) != types.end();
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
    // Fonts, modules and fetched data of other origins were allowed when the page was saved.
    headers.push_back(header("Access-Control-Allow-Origin", request.origin.empty() ? "*" : request.origin));
    if (!request.origin.empty()) headers.push_back(header("Access-Control-Allow-Credentials", "true"));
    if (!request.headers.empty()) {
        headers.push_back(header("Access-Control-Allow-Headers", request.headers));
    }
    // Without it an http frame in an https page is blocked before it is ever asked for.
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
