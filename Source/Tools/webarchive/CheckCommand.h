#pragma once

// check ARCHIVE: whether a file is a web archive, and what is wrong with it.

#include "Source/Tools/Common/CommandLine.h"

namespace qrv::webarchive {

void addCheckCommand(CommandLine& commands);

} // namespace qrv::webarchive
