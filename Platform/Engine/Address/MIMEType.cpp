#include "Platform/Engine/Address/MIMEType.h"

#include "Platform/Foundation/ASCII.h"

#include <algorithm>
#include <initializer_list>

namespace qrv::engine {

namespace {

constexpr std::string_view whiteSpace = " \t\r\n\f\v";

bool isTokenCharacter(char c) {
    return isASCIIAlphanumeric(c) || std::string_view("!#$%&'*+-.^_`|~/:").find(c) != std::string_view::npos;
}

std::string_view firstWord(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
    return text.substr(0, text.find_first_of(whiteSpace));
}

bool isOneOf(std::string_view type, std::initializer_list<std::string_view> types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

} // namespace

std::string headerToken(std::string_view value) {
    constexpr std::size_t longest = 127;
    std::string token(value.substr(0, value.find(';')));
    std::erase_if(token, [](char c) { return !isTokenCharacter(c); });
    return token.size() > longest ? std::string() : token;
}

MIMEType::MIMEType(std::string_view written) : text_(lowered(headerToken(firstWord(written)))) {}

bool MIMEType::isPDF() const {
    return isOneOf(text_, {"application/pdf", "application/x-pdf", "text/pdf"});
}

bool MIMEType::isImage() const {
    return text_.starts_with("image/");
}

bool MIMEType::isDownload() const {
    if (!text_.starts_with("application/")) return text_ == "binary/octet-stream";
    // The first two make the engine look at the bytes.
    const bool isShown =
        isOneOf(text_, {"application/unknown", "application/x-unknown-content-type", "application/ogg",
                        "application/x-mpegurl", "application/vnd.apple.mpegurl"});
    return !isShown && !isMarkup() && !isShownAsText() && !isPDF();
}

bool MIMEType::isMarkup() const {
    return text_ == "text/html" || text_.ends_with("xml");
}

bool MIMEType::isScript() const {
    return text_.ends_with("javascript") || text_.ends_with("ecmascript");
}

bool MIMEType::isShownAsText() const {
    if (text_.starts_with("text/")) return !isOneOf(text_, {"text/html", "text/xml", "text/xsl"});
    if (text_.starts_with("application/")) {
        if (isScript() || text_.ends_with("json") || text_.ends_with("yaml")) return true;
    }
    return isOneOf(text_,
                   {"application/sql", "application/toml", "application/x-sh", "application/x-httpd-php",
                    "application/x-perl", "application/x-tex", "application/x-latex",
                    "application/typescript", "application/x-subrip", "message/rfc822"});
}

} // namespace qrv::engine
