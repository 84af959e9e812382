#pragma once

// The file of the page that is to be stored.

#include <string>

namespace qrv::webarchive {

/// The path of a page: of the file itself, or of the page in a folder. That is its index.html, or else its
/// only page; of several the only one beside a folder of its files, as browsers save them ("Page.html" and
/// "Page_files"). Throws Failure if there is none, or it is not clear which one.
std::string pageFileAt(const std::string& path);

} // namespace qrv::webarchive
