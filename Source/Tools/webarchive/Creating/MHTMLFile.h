#pragma once

// MHTML files as pages to make an archive of.

#include "Platform/WebArchive/WebArchive.h"

#include <string>

namespace qrv::webarchive {

/// Whether a file is an MHTML file, by its name.
bool isMHTMLFile(const std::string& path);

/// The page in such a file with all its parts beside each other, as an engine can load it: references by the
/// identifiers of parts ("cid:") are references to their addresses. A part without an address gets one below
/// "http://cid.invalid/", a page `address`. Throws Failure if the file cannot be read or has no page in it.
WebArchive archiveOfMHTMLFile(const std::string& path, const NSURL& address);

/// The archive, with those parts of the file that the page did not ask for.
WebArchive withUnusedParts(const WebArchive& archive, const WebArchive& file);

} // namespace qrv::webarchive
