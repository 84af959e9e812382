#pragma once

// Why a command could not do its work.

#include <stdexcept>
#include <string>

namespace qrv {

/// Ends the program with the exit status of a failure. The text goes to standard error, where its controls
/// are made harmless.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& what) : std::runtime_error(what) {}
};

} // namespace qrv
