#include "Platform/Foundation/URLPieces.h"

#include "Platform/Foundation/ASCII.h"

#include <algorithm>

namespace qrv {

namespace {

/// The scheme at the start of the text, if there is one with its colon.
std::string_view schemeAtStart(std::string_view url) {
    const auto* const end = std::find_if_not(url.begin(), url.end(), [](char c) {
        return isASCIIAlphanumeric(c) || c == '+' || c == '-' || c == '.';
    });
    const bool isScheme = end != url.end() && *end == ':' && isASCIILetter(url.front());
    return isScheme ? url.substr(0, static_cast<std::size_t>(end - url.begin())) : std::string_view();
}

} // namespace

URLPieces splitURL(std::string_view url) {
    URLPieces pieces;
    pieces.scheme = schemeAtStart(url);
    std::string_view rest = url.substr(pieces.scheme.empty() ? 0 : pieces.scheme.size() + 1);
    const std::size_t tail = std::min(rest.find_first_of("?#"), rest.size());
    pieces.tail = rest.substr(tail);
    rest = rest.substr(0, tail);
    if (rest.starts_with("//")) {
        const std::size_t end = std::min(rest.find('/', 2), rest.size());
        pieces.authority = rest.substr(2, end - 2);
        pieces.hasAuthority = true;
        rest.remove_prefix(end);
    }
    pieces.path = rest;
    return pieces;
}

std::string_view withoutFragment(std::string_view url) {
    return url.substr(0, url.find('#'));
}

} // namespace qrv
