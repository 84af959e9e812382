#pragma once

// Finds the installed browser engine.

#include <optional>
#include <string>
#include <vector>

namespace qrv::engine {

struct EngineExecutable {
    std::string path;
    bool isHeadlessShell = true; ///< otherwise the full browser, which needs an option to open no window
};

struct EngineSearch {
    std::string chosen;                   ///< if not empty, only this file is tried
    std::vector<EngineExecutable> places; ///< tried first, in order
    std::string path;                     ///< then these directories are searched, separated by colons

    /// Takes WEB2PDF_ENGINE, the places where distributions install the program itself (the commands of the
    /// same name are scripts, which start more slowly), and PATH.
    static EngineSearch fromEnvironment();
};

/// Returns the first executable file, or nothing.
std::optional<EngineExecutable> locateEngine(const EngineSearch& search);

} // namespace qrv::engine
