#pragma once

// The element that holds a frame, as far as anyone asks: its class.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class DOMElement : public id {
public:
    using id::id;
    DOMElement() = default;
    static const ClassInfo& classInfo();

    /// The element of a node name: "FRAME" gives a DOMHTMLFrameElement, "IFRAME" a DOMHTMLIFrameElement,
    /// also in small letters; another name gives a DOMElement; nil gives nil.
    static DOMElement elementWithTagName(const NSString& tagName);
};

/// The element of a frame in a frameset.
struct DOMHTMLFrameElement {
    static const ClassInfo& classInfo();
};

/// An inline frame's element; no kind of DOMHTMLFrameElement.
struct DOMHTMLIFrameElement {
    static const ClassInfo& classInfo();
};

} // namespace qrv
