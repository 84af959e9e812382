#include "Platform/Engine/Address/HostName.h"

#include "Platform/Foundation/ASCII.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>

namespace qrv::engine {

namespace {

/// Far more than the 253 characters of a name, even percent-encoded.
constexpr std::size_t longestHost = 4096;

std::optional<std::string> normalizedIPv6(const std::string& host) {
    in6_addr address{};
    if (!host.ends_with(']') || ::inet_pton(AF_INET6, host.substr(1, host.size() - 2).c_str(), &address) != 1)
        return std::nullopt;
    std::array<char, INET6_ADDRSTRLEN> text{};
    ::inet_ntop(AF_INET6, &address, text.data(), text.size());
    return "[" + std::string(text.data()) + "]";
}

bool isNumber(std::string_view label) {
    const bool hexadecimal = label.starts_with("0x");
    label.remove_prefix(hexadecimal ? 2 : 0);
    return (hexadecimal || !label.empty()) && std::all_of(label.begin(), label.end(), [hexadecimal](char c) {
               return (c >= '0' && c <= '9') || (hexadecimal && c >= 'a' && c <= 'f');
           });
}

/// Whether the last label is a number: then the host must be an IPv4 address.
bool endsInNumber(std::string_view host) {
    if (host.ends_with('.')) host.remove_suffix(1);
    const std::size_t dot = host.rfind('.');
    return isNumber(dot == std::string_view::npos ? host : host.substr(dot + 1));
}

std::optional<std::string> normalizedIPv4(std::string host) {
    if (host.ends_with('.')) host.pop_back();
    in_addr address{};
    if (::inet_aton(host.c_str(), &address) == 0) return std::nullopt;
    std::array<char, INET_ADDRSTRLEN> text{};
    ::inet_ntop(AF_INET, &address, text.data(), text.size());
    return std::string(text.data());
}

bool isForbidden(char c) {
    return (c >= 0 && c < ' ') || c == 0x7F ||
           std::string_view("#%/:<>?@[\\]^|").find(c) != std::string_view::npos;
}

} // namespace

std::optional<std::string> normalizedHost(std::string_view host) {
    if (host.empty() || host.size() > longestHost) return std::nullopt;
    if (host.starts_with('[')) return normalizedIPv6(lowered(host));
    const std::optional<std::string> name = unicode::domainToASCII(percentDecoded(host));
    if (!name || name->empty() || std::any_of(name->begin(), name->end(), isForbidden)) return std::nullopt;
    return endsInNumber(*name) ? normalizedIPv4(*name) : percentEscaped(*name);
}

} // namespace qrv::engine
