#pragma once

// Which files the engine may use: its own, libraries, fonts, languages and time zones, and what it learns
// from the kernel.

#include "Platform/Confinement/FileRules.h"

#include <string>
#include <vector>

namespace qrv::engine {

/// The folder for temporary files that the caller's environment names.
std::string callersTemporaryFolder();

/// Opens to this process what it needs to start the engine with this program once it has rules of its own.
void allowEngine(FileRules& rules, const std::string& program);

/// What any program needs that shows texts: itself, libraries, fonts, languages and time zones. All else is
/// closed. Where the user's fonts are is told by the environment that it gets (NAME=value).
FileRules filesToStart(const std::string& program, const std::vector<std::string>& environment);

/// The rules for this program, with the environment that it gets (NAME=value), which tells where the user's
/// fonts are. It may change what is in the temporary folder, and nothing else.
FileRules engineFiles(const std::string& program, const std::vector<std::string>& environment,
                      const std::string& temporaryFolder);

} // namespace qrv::engine
