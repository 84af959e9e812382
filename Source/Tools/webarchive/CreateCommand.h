#pragma once

// create PAGE ARCHIVE: an archive of a page on disk, and of what it refers to.

#include "Source/Tools/Common/CommandLine.h"

namespace qrv::webarchive {

void addCreateCommand(CommandLine& commands);

} // namespace qrv::webarchive
