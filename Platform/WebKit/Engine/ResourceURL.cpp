#include "Platform/WebKit/Engine/ResourceURL.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace qrv::engine {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

bool isSchemeCharacter(char c) {
    c = lower(c);
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

/// The schemes whose addresses have an authority and a path of segments.
bool isHierarchical(std::string_view scheme) {
    constexpr std::array<std::string_view, 6> schemes{"http", "https", "ws", "wss", "ftp", "file"};
    return std::find(schemes.begin(), schemes.end(), scheme) != schemes.end();
}

std::string_view defaultPort(std::string_view scheme) {
    if (scheme == "http" || scheme == "ws") return ":80";
    if (scheme == "https" || scheme == "wss") return ":443";
    return scheme == "ftp" ? ":21" : "";
}

bool isDot(std::string_view segment) {
    return segment == "." || lowered(segment) == "%2e";
}

bool isDoubleDot(std::string_view segment) {
    const std::string s = lowered(segment);
    return s == ".." || s == ".%2e" || s == "%2e." || s == "%2e%2e";
}

std::string resolvedPath(std::string_view path) {
    std::vector<std::string_view> segments;
    path.remove_prefix(path.starts_with('/') ? 1 : 0);
    for (bool last = false; !last;) {
        const std::size_t slash = path.find('/');
        last = slash == std::string_view::npos;
        const std::string_view segment = path.substr(0, slash);
        if (isDoubleDot(segment)) {
            if (!segments.empty()) segments.pop_back();
        } else if (!isDot(segment)) {
            segments.push_back(segment);
        }
        // A path that ends in a dot segment keeps its last slash.
        if (last && (isDot(segment) || isDoubleDot(segment))) segments.push_back({});
        if (!last) path.remove_prefix(slash + 1);
    }
    std::string result;
    for (const std::string_view segment : segments) result.append("/").append(segment);
    return result.empty() ? "/" : result;
}

std::string normalizedAuthority(std::string_view authority, std::string_view scheme) {
    const std::size_t at = authority.rfind('@');
    const std::size_t hostStart = at == std::string_view::npos ? 0 : at + 1;
    std::string host = lowered(authority.substr(hostStart));
    const std::string_view port = defaultPort(scheme);
    if (!port.empty() && host.ends_with(port)) host.resize(host.size() - port.size());
    if (host.ends_with(':')) host.pop_back();
    return std::string(authority.substr(0, hostStart)) + host;
}

} // namespace

std::string schemeOf(std::string_view url) {
    const auto end = std::find_if_not(url.begin(), url.end(), isSchemeCharacter);
    if (end == url.begin() || end == url.end() || *end != ':') return {};
    return lowered(url.substr(0, static_cast<std::size_t>(end - url.begin())));
}

std::string normalizedURL(std::string_view url) {
    const std::string scheme = schemeOf(url);
    if (!isHierarchical(scheme)) return std::string(url);
    std::string_view rest = url.substr(scheme.size() + 1);
    if (!rest.starts_with("//")) return std::string(url);
    rest.remove_prefix(2);
    const std::size_t authorityEnd = std::min(rest.find_first_of("/?#"), rest.size());
    const std::string_view authority = rest.substr(0, authorityEnd);
    rest.remove_prefix(authorityEnd);
    const std::size_t pathEnd = std::min(rest.find_first_of("?#"), rest.size());
    return scheme + "://" + normalizedAuthority(authority, scheme) + resolvedPath(rest.substr(0, pathEnd)) +
           std::string(rest.substr(pathEnd));
}

std::string_view withoutFragment(std::string_view url) {
    return url.substr(0, url.find('#'));
}

std::string withOtherHTTPScheme(std::string_view url) {
    if (url.starts_with("https://")) return "http://" + std::string(url.substr(8));
    if (url.starts_with("http://")) return "https://" + std::string(url.substr(7));
    return {};
}

StandInAddress::StandInAddress(std::string url, const std::string& token, Use use) : url_(std::move(url)) {
    const std::string scheme = schemeOf(url_);
    if (use == Use::whereNeeded && (scheme == "http" || scheme == "https")) {
        engineURL_ = url_;
        return;
    }
    const std::size_t afterScheme = scheme.empty() ? 0 : scheme.size() + 1;
    stem_ = url_.substr(0, std::min(url_.find_first_not_of('/', afterScheme), url_.size()));
    prefix_ = "http://" + token + ".example/";
    engineURL_ = normalizedURL(prefix_ + url_.substr(stem_.size()));
}

std::string StandInAddress::storedURL(std::string_view engineURL) const {
    if (prefix_.empty() || !engineURL.starts_with(prefix_)) return std::string(engineURL);
    const std::string_view path = withoutFragment(engineURL);
    if (path == withoutFragment(engineURL_)) {
        return std::string(withoutFragment(url_)) + std::string(engineURL.substr(path.size()));
    }
    return stem_ + std::string(engineURL.substr(prefix_.size()));
}

} // namespace qrv::engine
