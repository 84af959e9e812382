#pragma once

// The element that contains a frame. Only its class is known.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class DOMElement : public Handle<DOMElement> {
public:
    using Handle::Handle;
    DOMElement() = default;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    /// Makes an element from its node name: DOMHTMLFrameElement for "FRAME", DOMHTMLIFrameElement for
    /// "IFRAME", in lower case too, and DOMElement for any other name. nil gives nil.
    static DOMElement elementWithTagName(const NSString& tagName);
};

/// A frame in a frameset.
struct DOMHTMLFrameElement {
    static const ClassInfo& classInfo();
};

/// An inline frame; not a kind of DOMHTMLFrameElement.
struct DOMHTMLIFrameElement {
    static const ClassInfo& classInfo();
};

} // namespace qrv
