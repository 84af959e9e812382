#pragma once

// The failure that readers and writers of property lists throw. It never leaves NSPropertyListSerialization.

#include <stdexcept>
#include <string>

namespace qrv::plist {

class PropertyListFailure : public std::runtime_error {
public:
    explicit PropertyListFailure(const std::string& what) : std::runtime_error(what) {}

    PropertyListFailure(const std::string& what, std::size_t offset)
        : std::runtime_error(what + " at byte " + std::to_string(offset)) {}
};

} // namespace qrv::plist
