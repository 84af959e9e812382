#include "Platform/WebKit/WebFrameView.h"

#include "Platform/AppKit/NSPrintInfo.h"
#include "Platform/WebKit/WebView.h"

#include <algorithm>

namespace qrv {

WebDocumentView::WebDocumentView(WebView& view) : view_(view) {}

void WebDocumentView::layout() {
    setFrameSize(view_.page().documentSize());
}

NSData WebDocumentView::dataWithPDFInsideRect(NSRect rect) {
    return rect.isEmpty() ? NSData() : view_.page().screenPDF();
}

NSData WebDocumentView::dataForPrinting(const NSPrintInfo& printInfo) {
    const double margin = std::max(
        {printInfo.topMargin(), printInfo.rightMargin(), printInfo.bottomMargin(), printInfo.leftMargin()});
    return view_.page().paginatedPDF(printInfo.paperSize(), margin);
}

NSView* WebFrameView::documentView() {
    if (!frame_.dataSource() || &frame_ != view_.mainFrame().get()) return nullptr;
    if (!documentView_) documentView_ = std::make_unique<WebDocumentView>(view_);
    return documentView_.get();
}

} // namespace qrv
