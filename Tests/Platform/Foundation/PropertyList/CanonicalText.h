#pragma once

// A property list as one line of text that tells every kind, bit and order apart; plists.py has the same for
// Python's values.

#include "Platform/Foundation/NSDictionary.h"

#include <string>

namespace qrv {

std::string canonicalText(const id& object);

/// What plists.py prints, its complaints included.
std::string runPlistsHelper(const std::string& arguments);

} // namespace qrv
