#include "Platform/AppKit/NSView.h"

#include "Platform/Foundation/NSException.h"

namespace qrv {

NSView::~NSView() {
    removeFromSuperview();
    for (NSView* view : subviews_) view->superview_ = nullptr;
}

void NSView::addSubview(NSView& view) {
    for (const NSView* ancestor = this; ancestor; ancestor = ancestor->superview_) {
        if (ancestor == &view) {
            throw NSException(NSInvalidArgumentException,
                              u"-[NSView addSubview:]: a view cannot stand in itself");
        }
    }
    view.removeFromSuperview();
    subviews_.push_back(&view);
    view.superview_ = this;
}

void NSView::removeFromSuperview() {
    if (!superview_) return;
    std::erase(superview_->subviews_, this);
    superview_ = nullptr;
}

NSData NSView::dataWithPDFInsideRect(NSRect /*rect*/) {
    return {};
}

NSData NSView::dataForPrinting(const NSPrintInfo& /*settings*/) {
    return {};
}

} // namespace qrv
