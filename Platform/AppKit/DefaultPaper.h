#pragma once

// The default paper of this machine.

#include "Platform/Foundation/NSRange.h"

namespace qrv {

/// Returns the default paper's size in whole points: the paper named by PAPERSIZE, by the configuration file
/// that PAPERCONF names, by /etc/papersize or by the locale. For an unknown name it is the paper library's
/// own default, and if there is none, US Letter (612 x 792). Read anew at each call; main thread only.
NSSize defaultPaperSize();

} // namespace qrv
