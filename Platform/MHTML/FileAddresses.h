#pragma once

// Addresses of files in MHTML files: "file:///a/b" is there as "http://file.invalid/a/b", of a host that is
// never there, because browsers load no files for a page in such a file.

#include <string>
#include <string_view>

namespace qrv {

inline constexpr std::string_view filePrefix = "file:///";
inline constexpr std::string_view fileStandInPrefix = "http://file.invalid/";

/// The address with another beginning, if it has this one.
inline std::string withPrefix(const std::string& address, std::string_view from, std::string_view to) {
    return address.starts_with(from) ? std::string(to).append(address, from.size()) : address;
}

/// What stands for a file's address; other addresses stay.
inline std::string fileStandIn(const std::string& address) {
    return withPrefix(address, filePrefix, fileStandInPrefix);
}

/// The file's address that this stands for; other addresses stay.
inline std::string fileAddress(const std::string& address) {
    return withPrefix(address, fileStandInPrefix, filePrefix);
}

} // namespace qrv
