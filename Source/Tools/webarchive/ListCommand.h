#pragma once

// list ARCHIVE: what an archive holds, as a table or as JSON.

#include "Source/Tools/Common/CommandLine.h"

namespace qrv::webarchive {

void addListCommand(CommandLine& commands);

} // namespace qrv::webarchive
