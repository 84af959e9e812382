#pragma once

// The default paper of this machine.

#include "Platform/Foundation/NSRange.h"

namespace qrv {

/// Returns the default paper's size in whole points. The first of these tells it:
/// - PAPERSIZE, a paper's name;
/// - the file that PAPERCONF names, else /etc/papersize: its first word, where lines that begin with # do not
/// count;
/// - the locale's paper, unless the locale is C, which belongs to no country.
/// It is US Letter (612 x 792) where none of them does, and for a name that is unknown. Read anew at each
/// call; main thread only.
NSSize defaultPaperSize();

} // namespace qrv
