#pragma once

// Which files the engine may use: its own, libraries, fonts, languages and time zones, and what it learns
// from the kernel.

#include "Platform/Confinement/FileRules.h"

#include <string>
#include <vector>

namespace qrv::engine {

/// The rules for this program, with the environment that it gets (NAME=value), which tells where the user's
/// fonts are. It may change what is in the temporary folder, and nothing else.
FileRules engineFiles(const std::string& program, const std::vector<std::string>& environment,
                      const std::string& temporaryFolder);

} // namespace qrv::engine
