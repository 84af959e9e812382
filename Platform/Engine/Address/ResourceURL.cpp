#include "Platform/Engine/Address/ResourceURL.h"

#include "Platform/Engine/Address/HostName.h"
#include "Platform/Foundation/ASCII.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/Foundation/URLPieces.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace qrv::engine {

namespace {

/// Whether the engine knows the syntax of the scheme's addresses.
bool isSpecial(std::string_view scheme) {
    constexpr std::array<std::string_view, 6> schemes{"http", "https", "ws", "wss", "ftp", "file"};
    return std::find(schemes.begin(), schemes.end(), scheme) != schemes.end();
}

std::string_view defaultPort(std::string_view scheme) {
    if (scheme == "http" || scheme == "ws") return "80";
    if (scheme == "https" || scheme == "wss") return "443";
    return scheme == "ftp" ? "21" : "";
}

/// Returns the number of dots, plain or escaped, if the segment consists of dots only; otherwise 0.
int countDots(std::string_view segment) {
    int dots = 0;
    for (; !segment.empty(); ++dots) {
        const bool escaped = segment.starts_with("%2e") || segment.starts_with("%2E");
        if (!escaped && segment.front() != '.') return 0;
        segment.remove_prefix(escaped ? 3 : 1);
    }
    return dots;
}

std::string resolvedPath(std::string_view path) {
    std::vector<std::string_view> segments;
    path.remove_prefix(path.starts_with('/') ? 1 : 0);
    for (bool last = false; !last;) {
        const std::size_t slash = path.find('/');
        last = slash == std::string_view::npos;
        const std::string_view segment = path.substr(0, slash);
        const int dots = countDots(segment);
        if (dots == 2 && !segments.empty()) segments.pop_back();
        if (dots != 1 && dots != 2) segments.push_back(segment);
        // A path that ends in a dot segment keeps its trailing slash.
        if (last && (dots == 1 || dots == 2)) segments.push_back({});
        if (!last) path.remove_prefix(slash + 1);
    }
    std::string result;
    for (const std::string_view segment : segments) result.append("/").append(segment);
    return result.empty() ? "/" : result;
}

/// Returns the user with a trailing "@", or empty; an empty password is removed.
std::string normalizedUser(std::string_view user) {
    if (user.ends_with(':') && user.find(':') == user.size() - 1) user.remove_suffix(1);
    if (user.empty()) return {};
    std::string result;
    for (const char c : percentEscaped(user)) c == '@' ? result.append("%40") : result.append(1, c);
    return result + "@";
}

/// Returns the port with a leading ":", or empty if it is the scheme's default; nothing if it is invalid.
std::optional<std::string> normalizedPort(std::string_view port, std::string_view scheme) {
    if (port.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    if (port.empty()) return std::string();
    port.remove_prefix(std::min(port.find_first_not_of('0'), port.size() - 1));
    if (port.size() > 5 || std::stoi(std::string(port)) > 65535) return std::nullopt;
    return port == defaultPort(scheme) ? std::string() : ":" + std::string(port);
}

/// Returns nothing if the engine would reject it.
std::optional<std::string> normalizedAuthority(std::string_view authority, std::string_view scheme) {
    if (scheme == "file") {
        const std::string host = authority.empty() ? "localhost" : normalizedHost(authority).value_or("");
        if (host.empty()) return std::nullopt;
        return host == "localhost" ? std::string() : host;
    }
    const std::size_t at = authority.rfind('@');
    const std::string user = at == std::string_view::npos ? "" : normalizedUser(authority.substr(0, at));
    if (at != std::string_view::npos) authority.remove_prefix(at + 1);
    const std::size_t colon = authority.rfind(':');
    const bool hasPort =
        colon != std::string_view::npos && authority.find(']', colon) == std::string_view::npos;
    const auto host = normalizedHost(authority.substr(0, hasPort ? colon : authority.size()));
    const auto port = normalizedPort(hasPort ? authority.substr(colon + 1) : "", scheme);
    return host && port ? std::optional(user + *host + *port) : std::nullopt;
}

/// In schemes that it knows, the engine reads a "\\" as a "/" and, except for files, any number of slashes as
/// the two in front of a host.
std::string withUsualSlashes(std::string_view url) {
    const URLPieces pieces = splitURL(url);
    const std::string scheme = lowered(pieces.scheme);
    if (!isSpecial(scheme)) return std::string(url);
    std::string rest(url.substr(scheme.size() + 1));
    const auto tail = rest.end() - static_cast<std::ptrdiff_t>(pieces.tail.size());
    std::replace(rest.begin(), tail, '\\', '/');
    if (scheme != "file") rest.replace(0, std::min(rest.find_first_not_of('/'), rest.size()), "//");
    return scheme + ":" + rest;
}

/// The parts of an address as the engine sees them, the scheme in lower case.
struct Pieces {
    explicit Pieces(std::string_view url) {
        const std::string text = withUsualSlashes(url);
        const URLPieces pieces = splitURL(text);
        scheme = lowered(pieces.scheme);
        authority = pieces.authority;
        hasAuthority = pieces.hasAuthority;
        path = pieces.path;
        tail = pieces.tail;
    }

    std::string scheme;
    std::string authority;
    bool hasAuthority = false;
    std::string path;
    std::string tail;
};

/// For schemes that it knows, the engine percent-encodes apostrophes in queries.
std::string normalizedTail(std::string_view tail, bool special) {
    std::string result;
    const std::size_t fragment = std::min(tail.find('#'), tail.size());
    for (const char c : percentEscaped(tail.substr(0, fragment))) {
        special&& c == '\'' ? result.append("%27") : result.append(1, c);
    }
    return result + percentEscaped(tail.substr(fragment));
}

} // namespace

std::string schemeOf(std::string_view url) {
    return lowered(splitURL(url).scheme);
}

std::string normalizedURL(std::string_view url) {
    const Pieces pieces(url);
    const bool special = isSpecial(pieces.scheme);
    std::string result = pieces.scheme.empty() ? "" : pieces.scheme + ":";
    if (special) {
        result += "//" + normalizedAuthority(pieces.authority, pieces.scheme)
                             .value_or(lowered(percentEscaped(pieces.authority)));
    } else if (pieces.hasAuthority) {
        result += "//" + percentEscaped(pieces.authority);
    }
    const bool hasSegments = special || pieces.path.starts_with('/');
    result += percentEscaped(hasSegments ? resolvedPath(pieces.path) : pieces.path);
    return result + normalizedTail(pieces.tail, special);
}

std::string readableURL(std::string_view normalizedURL) {
    std::string url(withoutFragment(normalizedURL));
    if (url.starts_with("https://")) url.erase(4, 1);
    url = percentDecoded(url);
    const auto text = unicode::fromUTF8(url);
    return text ? unicode::toUTF8Lossy(unicode::decomposed(*text)) : url;
}

std::string withOtherHTTPScheme(std::string_view url) {
    if (url.starts_with("https://")) return "http://" + std::string(url.substr(8));
    if (url.starts_with("http://")) return "https://" + std::string(url.substr(7));
    return {};
}

// The engine shows a blank page in the place of an address that is longer than this. Escaping makes up to
// three characters of one.
constexpr std::size_t longestURL = std::size_t{2} << 20;
constexpr std::size_t longestUnescaped = longestURL / 3;

StandInAddress::StandInAddress(std::string url, const std::string& token, Use use) : url_(std::move(url)) {
    const Pieces pieces(url_);
    if (use == Use::whereNeeded && url_.size() <= longestUnescaped &&
        (pieces.scheme == "http" || pieces.scheme == "https")) {
        engineURL_ = url_;
        return;
    }
    const bool startsAtRoot = pieces.path.starts_with('/');
    stem_ = url_.substr(0, pieces.scheme.empty() ? 0 : pieces.scheme.size() + 1);
    if (pieces.hasAuthority) stem_ += "//" + pieces.authority;
    if (pieces.hasAuthority || startsAtRoot) stem_ += "/";
    prefix_ = "http://" + token + ".example/";
    engineURL_ = normalizedURL(prefix_ + pieces.path.substr(startsAtRoot ? 1 : 0) + pieces.tail);
    if (engineURL_.size() > longestURL) engineURL_ = prefix_;
}

std::string StandInAddress::storedURL(std::string_view engineURL) const {
    if (prefix_.empty() || !engineURL.starts_with(prefix_)) return std::string(engineURL);
    const std::string_view page = withoutFragment(engineURL);
    if (page == withoutFragment(engineURL_)) {
        return std::string(withoutFragment(url_)).append(engineURL.substr(page.size()));
    }
    return stem_ + std::string(engineURL.substr(prefix_.size()));
}

std::vector<std::string> StandInAddress::stems() const {
    if (prefix_.empty()) return {};
    const std::string normalized = normalizedURL(stem_);
    if (normalized == "file:///") return {normalized, "file://localhost/"};
    return normalized.find("://") == std::string::npos ? std::vector<std::string>() : std::vector{stem_};
}

} // namespace qrv::engine
