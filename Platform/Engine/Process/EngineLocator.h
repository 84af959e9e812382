#pragma once

// Where the browser engine is installed.

#include <optional>
#include <string>
#include <vector>

namespace qrv::engine {

struct EngineExecutable {
    std::string path;
    bool isHeadlessShell = true; ///< otherwise the full browser, which has to be told to open no window
};

struct EngineSearch {
    std::string chosen;                   ///< when not empty, this file and no other
    std::vector<EngineExecutable> places; ///< looked at first, in order
    std::string path;                     ///< then these directories, separated by colons

    /// WEB2PDF_ENGINE, the places where distributions put the program itself (the commands of the same name
    /// are scripts, which take longer to start), and PATH.
    static EngineSearch fromEnvironment();
};

/// The first executable file found, or nothing.
std::optional<EngineExecutable> locateEngine(const EngineSearch& search);

} // namespace qrv::engine
