#include "Platform/Foundation/NSNull.h"

#include "Platform/Foundation/NSString.h"

namespace qrv {

namespace {

const ClassInfo nullClassInfo{"NSNull", &Object::classInfo};

class NullObject final : public Object, public NSCoding {
public:
    const ClassInfo& objectClass() const override { return nullClassInfo; }

    NSString description() const override { return u"<null>"; }
};

} // namespace

const ClassInfo& NSNull::classInfo() {
    return nullClassInfo;
}

NSNull NSNull::null() {
    static const NSNull instance(std::make_shared<NullObject>());
    return instance;
}

} // namespace qrv
