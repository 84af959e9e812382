#pragma once

// What the tool keeps itself from while it has to do with an archive: its parsers might be led astray.

#include "Platform/Confinement/FileRules.h"
#include "Platform/Foundation/NSString.h"

namespace qrv {

/// The rules for a run that makes the PDF at this path: reading stays open. What can be changed is the folder
/// of the PDF, that of OutPath and the temporary one; of programs only the engine can be started. Links at
/// both paths are followed now; a folder that is not there can not be changed later.
FileRules toolFiles(const NSString& pdfPath);

} // namespace qrv
