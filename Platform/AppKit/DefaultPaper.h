#pragma once

// The paper this machine prints on, as its owner has set it.

#include "Platform/Foundation/NSRange.h"

namespace qrv {

/// The default paper's size in whole points: the paper named by PAPERSIZE, the configuration file that
/// PAPERCONF names, /etc/papersize or the locale; where that name is unknown the library's own default, and
/// US Letter (612 x 792) where there is none. Read anew at each call; main thread only.
NSSize defaultPaperSize();

} // namespace qrv
