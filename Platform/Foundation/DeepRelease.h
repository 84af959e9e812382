#pragma once

// Releases what a container holds without recursion, however deep it is nested.

#include "Platform/Foundation/Object.h"

#include <utility>
#include <vector>

namespace qrv {

/// For the destructors of payloads that hold others. The contents of those that end with them are released by
/// the outermost call.
void releaseDeep(std::vector<id>& contents);
void releaseDeep(std::vector<std::pair<id, id>>& contents);

} // namespace qrv
