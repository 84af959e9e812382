#pragma once

// The views that show a frame: the frame's place in the page, and the document in it.

#include "Platform/AppKit/NSView.h"

#include <memory>

namespace qrv {

class WebFrame;
class WebView;

/// Draws a whole document, whatever part of it a window would show.
class WebDocumentView final : public NSView {
public:
    explicit WebDocumentView(WebView& view);

    /// Lays the document out and takes its size, in points. The view is empty before.
    void layout() override;
    /// The whole document on one page; the rectangle only has to be non-empty. nil otherwise and when the
    /// engine does not deliver.
    NSData dataWithPDFInsideRect(NSRect rect) override;
    /// The document on pages of the settings' paper, scaled down to fit their width; the largest of the four
    /// margins is kept on every side. nil when the engine does not deliver.
    NSData dataForPrinting(const NSPrintInfo& printInfo) override;

private:
    WebView& view_;
};

class WebFrameView {
public:
    WebFrameView(WebView& view, const WebFrame& frame) : view_(view), frame_(frame) {}

    // - documentView
    /// Null when the frame shows no document; a first load that is under way is waited for. Only the main
    /// frame's document can be drawn.
    NSView* documentView();

private:
    WebView& view_;
    const WebFrame& frame_;
    std::unique_ptr<WebDocumentView> documentView_;
};

} // namespace qrv
