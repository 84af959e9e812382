#pragma once

// The preference files of a domain and their contents.

#include "Platform/Foundation/NSDictionary.h"

#include <memory>
#include <string>
#include <vector>

namespace qrv {

using PreferencePaths = std::shared_ptr<const std::vector<std::string>>;

/// The paths of a domain's files, existing or not, in order of precedence; never null. None for a name that
/// is empty or could lead to another folder. The environment counts as it is at the time of the call.
PreferencePaths preferenceFiles(const NSString& domain);

/// Returns the file's dictionary; nil if there is no such file or it cannot be read, which is reported once
/// (see setPreferencesWarning). An unchanged file is not read again.
NSDictionary readPreferenceFile(const std::string& path);

} // namespace qrv
