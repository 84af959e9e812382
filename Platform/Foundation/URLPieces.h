#pragma once

// Splits URLs by the generic syntax: "scheme://authority/path?query#fragment".

#include <string_view>

namespace qrv {

/// The parts of a URL, as views into its text.
struct URLPieces {
    std::string_view scheme; ///< as written, without the colon; empty without one
    std::string_view authority;
    bool hasAuthority = false; ///< also if it is empty
    std::string_view path;
    std::string_view tail; ///< query and fragment, from "?" or "#" on
};

/// Splits any text: what is no scheme belongs to the path.
URLPieces splitURL(std::string_view url);

/// Returns the part before "#".
std::string_view withoutFragment(std::string_view url);

} // namespace qrv
