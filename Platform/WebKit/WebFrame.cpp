#include "Platform/WebKit/WebFrame.h"

#include "Platform/WebKit/WebView.h"

namespace qrv {

const ClassInfo WebFrame::classInfo{"WebFrame", &Object::classInfo};

void WebFrame::loadArchive(const WebArchive& archive) {
    if (view_) view_->loadArchiveInFrame(archive, *this);
}

const std::vector<WebFramePtr>& WebFrame::childFrames() const {
    if (view_) view_->page().waitForLoad();
    return childFrames_;
}

DOMElement WebFrame::frameElement() const {
    return view_ ? DOMElement::elementWithTagName(view_->page().ownerElementName(identifier_)) : DOMElement();
}

WebFrameView* WebFrame::frameView() {
    if (view_ && !frameView_) frameView_ = std::make_unique<WebFrameView>(*view_, *this);
    return view_ ? frameView_.get() : nullptr;
}

} // namespace qrv
