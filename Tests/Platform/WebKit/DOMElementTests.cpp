#include "Platform/WebKit/DOMElement.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

TEST(DOMElement, OfAFrameIsAFrameElement) {
    for (const char16_t* name : {u"FRAME", u"frame"}) {
        const DOMElement element = DOMElement::elementWithTagName(name);
        EXPECT_TRUE(element.isKindOfClass(DOMHTMLFrameElement::classInfo()));
        EXPECT_TRUE(element.isKindOfClass(DOMElement::classInfo()));
        EXPECT_FALSE(element.isKindOfClass(DOMHTMLIFrameElement::classInfo()));
    }
}

TEST(DOMElement, OfAnInlineFrameIsNoFrameElement) {
    for (const char16_t* name : {u"IFRAME", u"iframe"}) {
        const DOMElement element = DOMElement::elementWithTagName(name);
        EXPECT_TRUE(element.isKindOfClass(DOMHTMLIFrameElement::classInfo()));
        EXPECT_TRUE(element.isKindOfClass(DOMElement::classInfo()));
        EXPECT_FALSE(element.isKindOfClass(DOMHTMLFrameElement::classInfo()));
    }
}

TEST(DOMElement, OfAnotherNameIsOfNeitherKind) {
    for (const char16_t* name : {u"OBJECT", u"FRAMESET", u""}) {
        const DOMElement element = DOMElement::elementWithTagName(name);
        EXPECT_TRUE(element.isKindOfClass(DOMElement::classInfo()));
        EXPECT_FALSE(element.isKindOfClass(DOMHTMLFrameElement::classInfo()));
        EXPECT_FALSE(element.isKindOfClass(DOMHTMLIFrameElement::classInfo()));
    }
}

TEST(DOMElement, OfNoNameIsNil) {
    EXPECT_TRUE(DOMElement::elementWithTagName(nullptr).isNil());
}

TEST(DOMElement, ComesBackFromAnUntypedHandle) {
    const id untyped = DOMElement::elementWithTagName(u"FRAME");
    EXPECT_TRUE(as<DOMElement>(untyped).isKindOfClass(DOMHTMLFrameElement::classInfo()));
}

} // namespace
} // namespace qrv
