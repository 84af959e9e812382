#pragma once

// The file that a command makes.

#include "Platform/Confinement/FileRules.h"
#include "Platform/Foundation/NSData.h"

#include <string>

namespace qrv::webarchive {

/// Throws Failure if no file can be written at the path, as far as can be known now, or it is the file that
/// is read.
void requireOutput(const std::string& path, const std::string& input);

/// The rules for a command that makes this file out of what is not to be trusted: reading stays open.
FileRules rulesForOutput(const std::string& path);

/// Makes a file of these bytes, or replaces it in one step. Throws Failure, and then leaves what was there.
void writeOutput(const std::string& path, const NSData& data);

} // namespace qrv::webarchive
