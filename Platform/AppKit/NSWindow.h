#pragma once

// A window that is never shown; it hosts a view for layout and drawing.

#include "Platform/AppKit/NSView.h"

namespace qrv {

/// Style masks and backing stores, with the platform's values.
enum NSWindowStyleMask : unsigned long { NSWindowStyleMaskBorderless = 0 };

enum NSBackingStoreType : unsigned long { NSBackingStoreRetained = 0 };

class NSWindow {
public:
    // - initWithContentRect:styleMask:backing:defer:
    /// The rectangle is the contents' rectangle, in points. Style, backing store and deferral have no effect,
    /// since nothing is shown. Before NSApplicationLoad, NSInternalInconsistencyException is raised.
    NSWindow(NSRect contentRect, NSWindowStyleMask styleMask, NSBackingStoreType backing, bool defer);

    // - contentView
    /// As large as the window, and owned by it.
    NSView& contentView() { return contentView_; }

private:
    NSView contentView_;
};

} // namespace qrv
