#pragma once

// The program's commands: each is a file of its own, and is added here.

#include "Source/Tools/webarchive/CatCommand.h"
#include "Source/Tools/webarchive/CheckCommand.h"
#include "Source/Tools/webarchive/CreateCommand.h"
#include "Source/Tools/webarchive/ExtractCommand.h"
#include "Source/Tools/webarchive/ListCommand.h"

namespace qrv::webarchive {

inline void addCommands(CommandLine& commands) {
    addListCommand(commands);
    addCatCommand(commands);
    addCheckCommand(commands);
    addExtractCommand(commands);
    addCreateCommand(commands);
}

} // namespace qrv::webarchive
