#pragma once

// File metadata that the desktop stores beside a file's contents.

#include "Platform/Foundation/NSArray.h"

namespace qrv {

/// Returns the keywords of a file, following links: the comma-separated `user.xdg.tags` extended attribute,
/// trimmed and without empty entries. nil if the attribute is missing or the file system does not support it.
NSArray keywordsOfFile(const NSString& path);

} // namespace qrv
