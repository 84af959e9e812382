#include "Source/Tools/webarchive/Creating/FileTypes.h"

#include "Platform/Foundation/ASCII.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qrv::webarchive {

std::string typeOfFile(std::string_view name) {
    // What pages are made of. Pictures, films and sounds are told by their bytes, too, but for those in text.
    constexpr std::array<std::pair<std::string_view, std::string_view>, 44> types{{
        {"html", "text/html"},
        {"htm", "text/html"},
        {"shtml", "text/html"},
        {"xhtml", "application/xhtml+xml"},
        {"xht", "application/xhtml+xml"},
        {"xml", "text/xml"},
        {"xsl", "text/xsl"},
        {"svg", "image/svg+xml"},
        {"mhtml", "multipart/related"},
        {"mht", "multipart/related"},
        {"css", "text/css"},
        {"js", "text/javascript"},
        {"mjs", "text/javascript"},
        {"json", "application/json"},
        {"webmanifest", "application/manifest+json"},
        {"wasm", "application/wasm"},
        {"txt", "text/plain"},
        {"csv", "text/csv"},
        {"md", "text/markdown"},
        {"vtt", "text/vtt"},
        {"png", "image/png"},
        {"apng", "image/apng"},
        {"jpg", "image/jpeg"},
        {"jpeg", "image/jpeg"},
        {"gif", "image/gif"},
        {"webp", "image/webp"},
        {"avif", "image/avif"},
        {"bmp", "image/bmp"},
        {"ico", "image/x-icon"},
        {"cur", "image/x-icon"},
        {"woff", "font/woff"},
        {"woff2", "font/woff2"},
        {"ttf", "font/ttf"},
        {"otf", "font/otf"},
        {"mp4", "video/mp4"},
        {"m4v", "video/mp4"},
        {"webm", "video/webm"},
        {"ogv", "video/ogg"},
        {"mp3", "audio/mpeg"},
        {"m4a", "audio/mp4"},
        {"ogg", "audio/ogg"},
        {"oga", "audio/ogg"},
        {"wav", "audio/wav"},
        {"pdf", "application/pdf"},
    }};
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) return {};
    const std::string ending = lowered(name.substr(dot + 1));
    const auto* const found =
        std::find_if(types.begin(), types.end(), [&](const auto& type) { return type.first == ending; });
    return found == types.end() ? std::string() : std::string(found->second);
}

} // namespace qrv::webarchive
