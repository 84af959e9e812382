#include "Platform/WebKit/DOMElement.h"

#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo elementClassInfo{"DOMElement", &Object::classInfo};
const ClassInfo frameElementClassInfo{"DOMHTMLFrameElement", &elementClassInfo};
const ClassInfo iframeElementClassInfo{"DOMHTMLIFrameElement", &elementClassInfo};

class ElementObject final : public Object {
public:
    explicit ElementObject(const ClassInfo& elementClass) : class_(elementClass) {}

    const ClassInfo& objectClass() const override { return class_; }

private:
    const ClassInfo& class_;
};

/// Documents of XML keep small letters.
const ClassInfo& classOfElement(const NSString& tagName) {
    if (tagName == NSString(u"FRAME") || tagName == NSString(u"frame")) return frameElementClassInfo;
    if (tagName == NSString(u"IFRAME") || tagName == NSString(u"iframe")) return iframeElementClassInfo;
    return elementClassInfo;
}

} // namespace

const ClassInfo& DOMElement::classInfo() {
    return elementClassInfo;
}

bool DOMElement::accepts(const Object& payload) {
    return typeid(payload) == typeid(ElementObject);
}

const ClassInfo& DOMHTMLFrameElement::classInfo() {
    return frameElementClassInfo;
}

const ClassInfo& DOMHTMLIFrameElement::classInfo() {
    return iframeElementClassInfo;
}

DOMElement DOMElement::elementWithTagName(const NSString& tagName) {
    return tagName ? DOMElement(std::make_shared<ElementObject>(classOfElement(tagName))) : DOMElement();
}

} // namespace qrv
