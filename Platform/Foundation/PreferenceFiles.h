#pragma once

// Where the preferences of a domain are, and what is in them.

#include "Platform/Foundation/NSDictionary.h"

#include <string>
#include <vector>

namespace qrv {

/// The files of a domain, whether they exist or not, the one that counts first. None for a name that is empty
/// or could lead to another folder.
std::vector<std::string> preferenceFiles(const NSString& domain);

/// The file's dictionary; nil when there is none or it cannot be read, of which `setPreferencesWarning`'s
/// receiver is told once. A file that has not changed is not read again.
NSDictionary readPreferenceFile(const std::string& path);

} // namespace qrv
