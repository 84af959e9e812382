#pragma once

// Metadata of files that the desktop keeps beside their contents.

#include "Platform/Foundation/NSArray.h"

namespace qrv {

/// The keywords of a file, links followed: the `user.xdg.tags` extended attribute, separated by commas,
/// without the white space around them and without empty ones. nil when there is no such attribute or the
/// file system knows none.
NSArray keywordsOfFile(const NSString& path);

} // namespace qrv
