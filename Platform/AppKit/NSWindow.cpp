#include "Platform/AppKit/NSWindow.h"

#include "Platform/AppKit/NSApplication.h"
#include "Platform/Foundation/NSException.h"

namespace qrv {

NSWindow::NSWindow(NSRect contentRect, NSWindowStyleMask /*styleMask*/, NSBackingStoreType /*backing*/,
                   bool /*defer*/)
    : contentView_(NSRect{{}, contentRect.size}) {
    if (applicationIsLoaded) return;
    throw NSException(NSInternalInconsistencyException, u"a window needs NSApplicationLoad");
}

} // namespace qrv
