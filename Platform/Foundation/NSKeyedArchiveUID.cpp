#include "Platform/Foundation/NSKeyedArchiveUID.h"

#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo uidClassInfo{"NSKeyedArchiveUID", &Object::classInfo};

class UIDObject final : public Object {
public:
    explicit UIDObject(unsigned long long value) : value_(value) {}

    const ClassInfo& objectClass() const override { return uidClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const UIDObject*>(&other);
        return o && o->value_ == value_;
    }

    std::size_t hash() const override { return std::hash<unsigned long long>{}(value_); }

    NSString description() const override { return NSString::stringWithFormat(u"{value = %llu}", value_); }

    unsigned long long value() const { return value_; }

private:
    const unsigned long long value_;
};

} // namespace

const ClassInfo& NSKeyedArchiveUID::classInfo() {
    return uidClassInfo;
}

bool NSKeyedArchiveUID::accepts(const Object& payload) {
    return typeid(payload) == typeid(UIDObject);
}

NSKeyedArchiveUID NSKeyedArchiveUID::uidWithValue(unsigned long long value) {
    return NSKeyedArchiveUID(std::make_shared<UIDObject>(value));
}

unsigned long long NSKeyedArchiveUID::value() const {
    return isNil() ? 0 : static_cast<const UIDObject&>(*shared()).value();
}

} // namespace qrv
