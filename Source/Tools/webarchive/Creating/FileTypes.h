#pragma once

// MIME types of files on disk.

#include <string>
#include <string_view>

namespace qrv::webarchive {

/// The type that a file's name stands for, by the part behind its last dot in any case. Empty for a name
/// that says nothing of it: what the file holds decides then.
std::string typeOfFile(std::string_view name);

} // namespace qrv::webarchive
