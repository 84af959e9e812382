#pragma once

// A rectangle that draws itself. Views are never shown; what they draw is asked for as PDF. Main thread only.

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
    /// Takes the view out of its superview; its subviews lose theirs.
    virtual ~NSView();

    // - frame
    /// In the coordinates of the superview.
    NSRect frame() const { return frame_; }

    // - bounds
    /// The same size, with the origin at zero.
    NSRect bounds() const { return {{}, frame_.size}; }

    // - setFrame:
    virtual void setFrame(NSRect frame) { frame_ = frame; }

    // - setFrameSize:
    void setFrameSize(NSSize size) { setFrame({frame_.origin, size}); }

    // - addSubview:
    /// Held without ownership, in front of its siblings; taken out of the superview it had. A view cannot
    /// hold itself or a view that it stands in: that raises NSInvalidArgumentException.
    void addSubview(NSView& view);
    // - removeFromSuperview
    void removeFromSuperview();

    // - superview
    /// Null for none.
    NSView* superview() const { return superview_; }

    // - subviews
    const std::vector<NSView*>& subviews() const { return subviews_; }

    // - layout
    /// Arranges the contents for the present frame.
    virtual void layout() {}

    // - dataWithPDFInsideRect:
    /// One page with what the view draws in the rectangle of its bounds; nil when it draws nothing.
    virtual NSData dataWithPDFInsideRect(NSRect rect);

    /// What the view draws, on as many pages as these settings make of it; nil when it cannot be printed.
    virtual NSData dataForPrinting(const NSPrintInfo& settings);

private:
    NSRect frame_;
    NSView* superview_ = nullptr;
    std::vector<NSView*> subviews_;
};

} // namespace qrv
