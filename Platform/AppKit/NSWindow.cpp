#include "Platform/AppKit/NSWindow.h"

namespace qrv {

NSWindow::NSWindow(NSRect contentRect, NSWindowStyleMask /*styleMask*/, NSBackingStoreType /*backing*/,
                   bool /*defer*/)
    : contentView_(NSRect{{}, contentRect.size}) {}

} // namespace qrv
