#pragma once

// The hashes of the PDFs, in the form that sha256sum checks: "sha256sum --check manifest-sha256.txt".

#include "Source/Tools/batch/Selection/Shard.h"

#include <string>

namespace qrv::batch {

/// A line of the manifest, with its line break. Line breaks and backslashes in the path are escaped as
/// sha256sum does it.
std::string manifestLine(const std::string& hash, const std::string& path);

/// Writes "manifest-sha256.txt" ("manifest-sha256.3-of-8.txt") of all PDFs of the shard that the folder's
/// results name, sorted by their paths. Throws Failure.
void writeManifest(const std::string& folder, const Shard& shard);

} // namespace qrv::batch
