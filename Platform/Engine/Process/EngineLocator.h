#pragma once

// Finds the installed browser engine.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qrv::engine {

struct EngineSearch {
    std::string chosen;              ///< if not empty, only this file is tried
    std::vector<std::string> places; ///< tried first, in order
    std::string path;                ///< then these directories are searched, separated by colons

    /// Takes WEB2PDF_ENGINE; the place that was set when this program was built, and those where
    /// distributions install the program itself (the commands of the same name are mostly scripts, which
    /// start more slowly and read settings), headless shells before full browsers; and PATH.
    static EngineSearch fromEnvironment();
};

/// The executable file of this name in the first of these directories, separated by colons, that has one.
/// Relative directories do not count.
std::optional<std::string> programInPath(std::string_view directories, std::string_view name);

/// The same for the directories of PATH.
std::optional<std::string> programInPath(std::string_view name);

/// Returns the path of the first executable file, or nothing.
std::optional<std::string> locateEngine(const EngineSearch& search);

} // namespace qrv::engine
