#pragma once

// The archive that a command is asked about.

#include "Platform/WebArchive/WebArchive.h"

#include <string>

namespace qrv::webarchive {

/// The bytes of a file. Throws Failure.
NSData readFile(const std::string& path);

/// Throws Failure if a part of these bytes of a file could not be read when it was needed. To be called when
/// they have been used.
void requireWhole(const NSData& data);

/// The archive in a file. Throws Failure if the file cannot be read or is no archive.
WebArchive readArchive(const std::string& path);

} // namespace qrv::webarchive
