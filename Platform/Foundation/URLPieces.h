#pragma once

// URLs taken apart by the generic syntax: "scheme://authority/path?query#fragment".

#include <string_view>

namespace qrv {

/// Views into the text that was taken apart.
struct URLPieces {
    std::string_view scheme; // as written, without the colon; empty without one
    std::string_view authority;
    bool hasAuthority = false; // though it may be empty
    std::string_view path;
    std::string_view tail; // query and fragment, from "?" or "#" on
};

/// Every text has pieces: what is no scheme belongs to the path.
URLPieces splitURL(std::string_view url);

/// The part before "#".
std::string_view withoutFragment(std::string_view url);

} // namespace qrv
