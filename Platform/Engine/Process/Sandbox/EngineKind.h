#pragma once

// Which of the two programs an engine is.

#include <string>

namespace qrv::engine {

enum class EngineKind {
    headlessShell,
    browser, ///< the full one: it opens windows unless it is told not to, and has a profile that it writes to
};

/// Goes by the file's name, of which the browser's has "chrom" in it and not "headless". Whatever else
/// somebody has chosen, such as a script, counts as the headless shell.
EngineKind engineKind(const std::string& program);

} // namespace qrv::engine
