#include "Platform/WebArchive/WebResource.h"

#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo resourceClassInfo{"WebResource", &Object::classInfo};

class ResourceObject final : public Object {
public:
    ResourceObject(NSData d, NSURL u, NSString m, NSString e, NSString f)
        : data(std::move(d)), url(std::move(u)), mimeType(std::move(m)), textEncodingName(std::move(e)),
          frameName(std::move(f)) {}

    const ClassInfo& objectClass() const override { return resourceClassInfo; }

    const NSData data;
    const NSURL url;
    const NSString mimeType;
    const NSString textEncodingName;
    const NSString frameName;
};

const ResourceObject* object(const WebResource& resource) {
    return static_cast<const ResourceObject*>(resource.shared().get());
}

} // namespace

const ClassInfo& WebResource::classInfo() {
    return resourceClassInfo;
}

bool WebResource::accepts(const Object& payload) {
    return typeid(payload) == typeid(ResourceObject);
}

WebResource WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
    const NSData& data, const NSURL& url, const NSString& mimeType, const NSString& textEncodingName,
    const NSString& frameName) {
    if (data.isNil() || mimeType.isNil()) return {};
    return WebResource(std::make_shared<ResourceObject>(data, url, mimeType, textEncodingName, frameName));
}

NSData WebResource::data() const {
    return isNil() ? NSData() : object(*this)->data;
}

NSURL WebResource::URL() const {
    return isNil() ? NSURL() : object(*this)->url;
}

NSString WebResource::MIMEType() const {
    return isNil() ? NSString() : object(*this)->mimeType;
}

NSString WebResource::textEncodingName() const {
    return isNil() ? NSString() : object(*this)->textEncodingName;
}

NSString WebResource::frameName() const {
    return isNil() ? NSString() : object(*this)->frameName;
}

} // namespace qrv
