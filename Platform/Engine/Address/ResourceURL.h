#pragma once

// The normal forms of resource addresses, and stand-in addresses.

#include <string>
#include <string_view>
#include <vector>

namespace qrv::engine {

/// Normalises an address, so that all spellings that the engine considers equal give the same text: scheme
/// and host in lower case, the host in ASCII, no default port, "/" for an empty path, dot segments resolved,
/// and percent-encoding as in NSURL. For schemes other than the web's, only scheme, dot segments and
/// encoding. A malformed address stays malformed. Linear time.
std::string normalizedURL(std::string_view url);

/// Reduces a normalised address further, so that all addresses that look the same to a reader give the same
/// text: without fragment, with http for https, percent-decoded, with decomposed letters. The result is a
/// key, not an address.
std::string readableURL(std::string_view normalizedURL);

/// Exchanges http and https; empty for other schemes.
std::string withOtherHTTPScheme(std::string_view url);

/// Returns the scheme in lower case, "http" for "http://host/"; empty if there is none.
std::string schemeOf(std::string_view url);

/// A synthetic origin for pages whose own address the engine cannot load ("about:blank", unknown schemes) or
/// should not load (local files). The engine gets an http address under a host that does not exist, and what
/// it requests under that host is mapped back.
class StandInAddress {
public:
    enum class Use { whereNeeded, always };

    /// Replaces an address that is not http or https or too long for the engine, or any address (`always`);
    /// otherwise changes nothing. Of an address that stays too long, scheme and authority are stood in for.
    /// `token` is a host label that the page cannot guess.
    StandInAddress(std::string url, const std::string& token, Use use = Use::whereNeeded);

    /// The address that the engine loads.
    const std::string& engineURL() const { return engineURL_; }

    /// Maps a requested address back to the stored one.
    std::string storedURL(std::string_view engineURL) const;

    /// The prefixes of stored addresses that the synthetic origin replaces, for absolute references in the
    /// page. Empty if nothing is replaced or the address cannot have others beside it.
    std::vector<std::string> stems() const;

    /// The synthetic origin, which takes the place of those prefixes.
    const std::string& prefix() const { return prefix_; }

private:
    std::string url_;
    std::string stem_;   // of the stored address: scheme and authority, up to the root slash
    std::string prefix_; // the synthetic origin, "http://<token>.example/"; empty if nothing is replaced
    std::string engineURL_;
};

} // namespace qrv::engine
