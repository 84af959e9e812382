#pragma once

// The views of a frame: the frame's area, and the document in it.

#include "Platform/AppKit/NSView.h"

#include <memory>

namespace qrv {

class WebFrame;
class WebView;

/// Draws the whole document, not just its visible part.
class WebDocumentView final : public NSView {
public:
    explicit WebDocumentView(WebView& view);

    /// Lays the document out and takes its size, in points. The view is empty before.
    void layout() override;
    /// Draws the whole document on one page; nil if the engine fails or the rectangle is empty (it does not
    /// matter otherwise).
    NSData dataWithPDFInsideRect(NSRect rect) override;
    /// Draws the document on pages of the settings' paper, scaled down to fit their width, with the largest
    /// of the four margins on every side; nil if the engine fails.
    NSData dataForPrinting(const NSPrintInfo& printInfo) override;

private:
    WebView& view_;
};

class WebFrameView {
public:
    WebFrameView(WebView& view, const WebFrame& frame) : view_(view), frame_(frame) {}

    // - documentView
    /// Null if the frame has no document. Only the main frame's document can be drawn.
    NSView* documentView();

private:
    WebView& view_;
    const WebFrame& frame_;
    std::unique_ptr<WebDocumentView> documentView_;
};

} // namespace qrv
