#pragma once

// Which files the engine may use: its own, libraries, fonts, languages and time zones, and what it learns
// from the kernel.

#include "Platform/Confinement/FileRules.h"

#include <string>
#include <vector>

namespace qrv::engine {

/// The rules for this program, with the environment that it gets (NAME=value), which tells where the user's
/// fonts are, and its temporary folder: the only place where it may change anything.
FileRules engineFiles(const std::string& program, const std::vector<std::string>& environment);

} // namespace qrv::engine
