#include "Platform/WebKit/DOMElement.h"

namespace qrv {

namespace {

const ClassInfo elementClassInfo{"DOMElement", &Object::classInfo};
const ClassInfo frameElementClassInfo{"DOMHTMLFrameElement", &elementClassInfo};
const ClassInfo iframeElementClassInfo{"DOMHTMLIFrameElement", &elementClassInfo};

class ElementObject final : public Object {
public:
    explicit ElementObject(NSString tagName) : tagName_(std::move(tagName)) {}

    const ClassInfo& objectClass() const override {
        // XML documents keep lower case.
        if (tagName_ == NSString(u"FRAME") || tagName_ == NSString(u"frame")) return frameElementClassInfo;
        if (tagName_ == NSString(u"IFRAME") || tagName_ == NSString(u"iframe")) return iframeElementClassInfo;
        return elementClassInfo;
    }

    const NSString& tagName() const { return tagName_; }

private:
    const NSString tagName_;
};

} // namespace

const ClassInfo& DOMElement::classInfo() {
    return elementClassInfo;
}

const ClassInfo& DOMHTMLFrameElement::classInfo() {
    return frameElementClassInfo;
}

const ClassInfo& DOMHTMLIFrameElement::classInfo() {
    return iframeElementClassInfo;
}

DOMElement DOMElement::elementWithTagName(const NSString& tagName) {
    return tagName ? DOMElement(std::make_shared<ElementObject>(tagName)) : DOMElement();
}

NSString DOMElement::tagName() const {
    return isNil() ? NSString() : static_cast<const ElementObject&>(*shared()).tagName();
}

} // namespace qrv
