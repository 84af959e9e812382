#pragma once

// The archive that a command is asked about.

#include "Platform/WebArchive/WebArchive.h"

#include <string>

namespace qrv::webarchive {

/// The bytes of a file. Throws Failure.
NSData readFile(const std::string& path);

/// The archive in a file. Throws Failure if the file cannot be read or is no archive.
WebArchive readArchive(const std::string& path);

} // namespace qrv::webarchive
