#pragma once

// Addresses of resources, brought into the form in which the engine asks for them.

#include <string>
#include <string_view>
#include <vector>

namespace qrv::engine {

/// A form that is the same for every way of writing an address that the engine takes for one: scheme and host
/// in lower case, the host in ASCII, no default port, "/" for an empty path, dot segments resolved, and each
/// character escaped that NSURL escapes. Where the scheme is not the web's, only scheme, dot segments and
/// escapes. An address that is malformed stays so. In linear time.
std::string normalizedURL(std::string_view url);

/// The same for all addresses that mean the same to a reader, however they are written: without a fragment,
/// with http for https, without escapes, and with letters and their marks apart. For addresses in their
/// normal form, which some of these differ in. No address by itself.
std::string readableURL(std::string_view normalizedURL);

/// The same address with https for http and the other way round; empty for other schemes.
std::string withOtherHTTPScheme(std::string_view url);

/// "http" of "http://host/"; in lower case, empty when there is none.
std::string schemeOf(std::string_view url);

/// Lets the engine load pages whose own address it cannot load ("about:blank", unknown schemes), or had
/// better not (local files): it gets an http address under a host that exists nowhere, and what it asks for
/// under that host is mapped back.
class StandInAddress {
public:
    enum class Use { whereNeeded, always };

    /// Stands in for an address that is not http or https, or for any; changes nothing otherwise. `token` is
    /// a host label that the page cannot guess.
    StandInAddress(std::string url, const std::string& token, Use use = Use::whereNeeded);

    /// What the engine is to load.
    const std::string& engineURL() const { return engineURL_; }

    /// The stored address of what the engine asks for.
    std::string storedURL(std::string_view engineURL) const;

    /// The beginnings of stored addresses that lead to where this one does, for references that are written
    /// out. None when nothing stands in, or when the address has no place for others beside it.
    std::vector<std::string> stems() const;

    /// What the engine's address begins with in the place of those.
    const std::string& prefix() const { return prefix_; }

private:
    std::string url_;
    std::string stem_;   // of the stored address: scheme and authority, up to the slash that is its root
    std::string prefix_; // the engine's in its place, "http://<token>.example/"; empty when nothing stands in
    std::string engineURL_;
};

} // namespace qrv::engine
