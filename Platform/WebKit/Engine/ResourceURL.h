#pragma once

// Addresses of resources, brought into the form in which the engine asks for them.

#include <string>
#include <string_view>

namespace qrv::engine {

/// The address as the engine writes it: scheme and host in lower case, no default port, "/" for an empty
/// path, dot segments resolved. An address of an opaque kind ("data:...", "about:blank") comes back as it is.
std::string normalizedURL(std::string_view url);

/// The part before "#".
std::string_view withoutFragment(std::string_view url);

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

private:
    std::string url_;
    std::string stem_;   // of the stored address: the scheme and the slashes behind it
    std::string prefix_; // the engine's in its place, "http://<token>.example/"; empty when nothing stands in
    std::string engineURL_;
};

} // namespace qrv::engine
