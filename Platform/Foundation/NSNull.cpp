#include "Platform/Foundation/NSNull.h"

#include "Platform/Foundation/NSString.h"

#include <typeinfo>

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

bool NSNull::accepts(const Object& payload) {
    return typeid(payload) == typeid(NullObject);
}

NSNull NSNull::null() {
    // Never destroyed: needed until the very end of the process.
    static const NSNull& instance = *new NSNull(std::make_shared<NullObject>());
    return instance;
}

} // namespace qrv
