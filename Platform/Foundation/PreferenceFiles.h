#pragma once

// The preference files of a domain and their contents.

#include "Platform/Foundation/NSDictionary.h"

#include <string>
#include <vector>

namespace qrv {

/// The files of a domain, existing or not, in order of precedence. None for a name that is empty or could
/// lead to another folder.
std::vector<std::string> preferenceFiles(const NSString& domain);

/// Returns the file's dictionary; nil if there is no such file or it cannot be read, which is reported once
/// (see setPreferencesWarning). An unchanged file is not read again.
NSDictionary readPreferenceFile(const std::string& path);

} // namespace qrv
