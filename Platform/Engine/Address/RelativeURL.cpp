#include "Platform/Engine/Address/RelativeURL.h"

#include "Platform/Foundation/URLPieces.h"

#include <algorithm>

namespace qrv::engine {

namespace {

/// Without line breaks, and without white space around it; with slashes for the backslashes that browsers
/// take for such.
std::string cleaned(std::string_view reference) {
    const auto isSpace = [](char c) { return static_cast<unsigned char>(c) <= 0x20; };
    while (!reference.empty() && isSpace(reference.front())) reference.remove_prefix(1);
    while (!reference.empty() && isSpace(reference.back())) reference.remove_suffix(1);
    std::string text(reference);
    std::erase_if(text, [](char c) { return c == '\t' || c == '\n' || c == '\r'; });
    if (splitURL(text).scheme.empty()) {
        const std::size_t tail = std::min(text.find_first_of("?#"), text.size());
        std::replace(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(tail), '\\', '/');
    }
    return text;
}

} // namespace

std::string resolvedURL(std::string_view reference, std::string_view base) {
    std::string text = cleaned(reference);
    if (!splitURL(text).scheme.empty()) return text;
    const URLPieces pieces = splitURL(base);
    const bool hasPath = !pieces.scheme.empty() && (pieces.hasAuthority || pieces.path.starts_with('/'));
    if (text.empty() || text.front() == '#') {
        return pieces.scheme.empty() ? std::string() : std::string(withoutFragment(base)) + text;
    }
    if (!hasPath) return {};
    std::string result = std::string(pieces.scheme) + ":";
    if (text.starts_with("//")) return result + text;
    if (pieces.hasAuthority) result.append("//").append(pieces.authority);
    if (text.front() == '/') return result + text;
    const std::string_view path = pieces.path.empty() ? std::string_view("/") : pieces.path;
    if (text.front() == '?') return result.append(path) + text;
    return result.append(path.substr(0, path.rfind('/') + 1)) + text;
}

} // namespace qrv::engine
