#pragma once

// A rectangular view. Views are never shown; they draw to PDF. Main thread only.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSRange.h"

#include <vector>

namespace qrv {

class NSPrintInfo;

class NSView {
public:
    NSView() = default;

    explicit NSView(NSRect frame) : frame_(frame) {}

    NSView(const NSView&) = delete;
    NSView& operator=(const NSView&) = delete;
    /// Removes the view from its superview and detaches its subviews.
    virtual ~NSView();

    // - frame
    /// In the superview's coordinates.
    NSRect frame() const { return frame_; }

    // - bounds
    /// The frame's size, with the origin at zero.
    NSRect bounds() const { return {{}, frame_.size}; }

    // - setFrame:
    virtual void setFrame(NSRect frame) { frame_ = frame; }

    // - setFrameSize:
    void setFrameSize(NSSize size) { setFrame({frame_.origin, size}); }

    // - addSubview:
    /// Adds a view in front of its siblings, after removing it from its old superview. Not owned. Adding a
    /// view to itself or to one of its descendants raises NSInvalidArgumentException.
    void addSubview(NSView& view);
    // - removeFromSuperview
    void removeFromSuperview();

    // - superview
    /// Null if there is none.
    NSView* superview() const { return superview_; }

    // - subviews
    const std::vector<NSView*>& subviews() const { return subviews_; }

    // - layout
    /// Lays the contents out for the current frame.
    virtual void layout() {}

    // - dataWithPDFInsideRect:
    /// Draws the rectangle, in the view's coordinates, on one page; nil if the view draws nothing.
    virtual NSData dataWithPDFInsideRect(NSRect rect);

    /// Draws the view on pages as the settings say; nil if it cannot be printed.
    virtual NSData dataForPrinting(const NSPrintInfo& settings);

private:
    NSRect frame_;
    NSView* superview_ = nullptr;
    std::vector<NSView*> subviews_;
};

} // namespace qrv
