#pragma once

// A window that is never shown: the place where a view stands while it lays out and draws.

#include "Platform/AppKit/NSView.h"

namespace qrv {

/// Style masks and backing stores, with the platform's values.
enum NSWindowStyleMask : unsigned long { NSWindowStyleMaskBorderless = 0 };

enum NSBackingStoreType : unsigned long { NSBackingStoreRetained = 0 };

class NSWindow {
public:
    // - initWithContentRect:styleMask:backing:defer:
    /// The rectangle is that of the contents, in points. Style, backing store and deferral describe a window
    /// on a screen and have nothing to act on here.
    NSWindow(NSRect contentRect, NSWindowStyleMask styleMask, NSBackingStoreType backing, bool defer);

    // - contentView
    /// As large as the window; it lives as long as the window.
    NSView& contentView() { return contentView_; }

private:
    NSView contentView_;
};

} // namespace qrv
