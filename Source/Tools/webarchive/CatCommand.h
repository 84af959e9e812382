#pragma once

// cat ARCHIVE [RESOURCE]: the bytes of one resource.

#include "Source/Tools/Common/CommandLine.h"

namespace qrv::webarchive {

void addCatCommand(CommandLine& commands);

} // namespace qrv::webarchive
