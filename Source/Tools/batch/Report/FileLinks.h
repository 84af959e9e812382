#pragma once

// Where a page finds the files beside it.

#include <optional>
#include <string>

namespace qrv::batch {

/// The absolute path of a file that results name, if it is below the folder: results can be anybody's.
std::optional<std::string> pathBelow(const std::string& folder, const std::string& name);

/// The relative address of a file for a page that is, or will be, at that path. Any bytes; all that could
/// mean something in an address is escaped.
std::string addressFrom(const std::string& page, const std::string& file);

} // namespace qrv::batch
