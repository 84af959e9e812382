#include "Platform/Foundation/NSURLRequest.h"

#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo requestClassInfo{"NSURLRequest", &Object::classInfo};

class RequestObject final : public Object {
public:
    explicit RequestObject(NSURL theURL) : url(std::move(theURL)) {}

    const ClassInfo& objectClass() const override { return requestClassInfo; }

    const NSURL url;
};

} // namespace

const ClassInfo& NSURLRequest::classInfo() {
    return requestClassInfo;
}

bool NSURLRequest::accepts(const Object& payload) {
    return typeid(payload) == typeid(RequestObject);
}

NSURLRequest NSURLRequest::requestWithURL(const NSURL& url) {
    return NSURLRequest(std::make_shared<RequestObject>(url));
}

NSURL NSURLRequest::URL() const {
    return isNil() ? NSURL() : static_cast<const RequestObject&>(*shared()).url;
}

} // namespace qrv
