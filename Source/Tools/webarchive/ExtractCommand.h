#pragma once

// extract ARCHIVE FOLDER: an archive as files that a browser opens, or as one MHTML file.

#include "Source/Tools/Common/CommandLine.h"

namespace qrv::webarchive {

void addExtractCommand(CommandLine& commands);

} // namespace qrv::webarchive
