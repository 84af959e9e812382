#include "Source/Tools/webarchive/Extract/FileNames.h"

#include "Platform/Foundation/ASCII.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/Foundation/URLPieces.h"

#include <algorithm>
#include <utility>

namespace qrv::webarchive {

namespace {

using Pair = std::pair<std::string_view, std::string_view>;

constexpr Pair suffixes[] = {
    {"application/atom+xml", "xml"},
    {"application/ecmascript", "js"},
    {"application/font-sfnt", "ttf"},
    {"application/font-woff", "woff"},
    {"application/font-woff2", "woff2"},
    {"application/javascript", "js"},
    {"application/json", "json"},
    {"application/manifest+json", "json"},
    {"application/pdf", "pdf"},
    {"application/rss+xml", "xml"},
    {"application/vnd.ms-fontobject", "eot"},
    {"application/wasm", "wasm"},
    {"application/x-font-ttf", "ttf"},
    {"application/x-font-woff", "woff"},
    {"application/x-javascript", "js"},
    {"application/x-pdf", "pdf"},
    {"application/xhtml+xml", "xhtml"},
    {"application/xml", "xml"},
    {"audio/aac", "aac"},
    {"audio/mp4", "m4a"},
    {"audio/mpeg", "mp3"},
    {"audio/ogg", "ogg"},
    {"audio/wav", "wav"},
    {"audio/webm", "weba"},
    {"font/otf", "otf"},
    {"font/ttf", "ttf"},
    {"font/woff", "woff"},
    {"font/woff2", "woff2"},
    {"image/apng", "apng"},
    {"image/avif", "avif"},
    {"image/bmp", "bmp"},
    {"image/gif", "gif"},
    {"image/jpeg", "jpg"},
    {"image/jpg", "jpg"},
    {"image/png", "png"},
    {"image/svg+xml", "svg"},
    {"image/tiff", "tiff"},
    {"image/vnd.microsoft.icon", "ico"},
    {"image/webp", "webp"},
    {"image/x-icon", "ico"},
    {"text/css", "css"},
    {"text/csv", "csv"},
    {"text/ecmascript", "js"},
    {"text/html", "html"},
    {"text/javascript", "js"},
    {"text/plain", "txt"},
    {"text/vtt", "vtt"},
    {"text/x-javascript", "js"},
    {"text/xml", "xml"},
    {"video/mp4", "mp4"},
    {"video/ogg", "ogv"},
    {"video/quicktime", "mov"},
    {"video/webm", "webm"},
};

bool isPlain(char c) {
    return isASCIIAlphanumeric(c) || c == '_';
}

/// The last part of the address's path; nothing of addresses that hold their data.
std::string lastPart(std::string_view address) {
    const URLPieces pieces = splitURL(address);
    if (lowered(pieces.scheme) == "data") return {};
    std::string_view path = pieces.path;
    while (path.ends_with('/')) path.remove_suffix(1);
    return percentDecoded(path.substr(path.rfind('/') + 1));
}

/// The text behind the last dot, if it looks like a suffix.
std::string_view suffixIn(std::string_view name) {
    constexpr std::size_t longest = 8;
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {};
    const std::string_view suffix = name.substr(dot + 1);
    return suffix.size() <= longest && std::all_of(suffix.begin(), suffix.end(), isASCIIAlphanumeric<char>)
               ? suffix
               : std::string_view();
}

/// Runs of other characters become one "-".
std::string plainStem(std::string_view name) {
    constexpr std::size_t longest = 60;
    std::string stem;
    for (const char c : name) {
        if (stem.size() == longest) break;
        if (isPlain(c) || (c == '.' && !stem.empty() && isPlain(stem.back()))) {
            stem += c;
        } else if (!stem.empty() && isPlain(stem.back())) {
            stem += '-';
        }
    }
    while (!stem.empty() && !isPlain(stem.back())) stem.pop_back();
    stem.erase(stem.begin(), std::find_if(stem.begin(), stem.end(), &isASCIIAlphanumeric<char>));
    return stem;
}

} // namespace

std::string suffixOf(const engine::MIMEType& type, std::string_view address) {
    const auto* const known =
        std::lower_bound(std::begin(suffixes), std::end(suffixes), type.text(),
                         [](const Pair& pair, const std::string& text) { return pair.first < text; });
    if (known != std::end(suffixes) && known->first == type.text()) return std::string(known->second);
    const std::string name = lastPart(address);
    const std::string suffix = lowered(suffixIn(name));
    return suffix.empty() ? "bin" : suffix;
}

std::string FileNames::take(std::string_view address, const engine::MIMEType& type) {
    const std::string name = lastPart(address);
    const std::string_view suffix = suffixIn(name);
    const std::string stem =
        plainStem(std::string_view(name).substr(0, name.size() - (suffix.empty() ? 0 : suffix.size() + 1)));
    return take(stem.empty() ? "resource" : stem, suffixOf(type, address));
}

std::string FileNames::take(const std::string& stem, const std::string& suffix) {
    const std::string ending = "." + suffix;
    std::string name = stem + ending;
    std::size_t& number = numbers_.try_emplace(lowered(name), 1).first->second;
    while (!taken_.insert(lowered(name)).second)
        name.replace(stem.size(), std::string::npos, "-").append(std::to_string(++number)).append(ending);
    return name;
}

} // namespace qrv::webarchive
