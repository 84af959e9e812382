#include "Platform/Foundation/Object.h"

#include "Platform/Foundation/NSString.h"

#include <ostream>
#include <typeinfo>

namespace qrv {

const ClassInfo Object::classInfo{"NSObject", nullptr};

namespace {

const ClassInfo classClassInfo{"Class", &Object::classInfo};

class ClassObject final : public Object {
public:
    explicit ClassObject(const ClassInfo& info) : info_(info) {}

    const ClassInfo& objectClass() const override { return classClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const ClassObject*>(&other);
        return o && &o->info_ == &info_;
    }

    std::size_t hash() const override { return std::hash<const void*>{}(&info_); }

    NSString description() const override { return NSString::stringWithUTF8String(info_.name); }

    const ClassInfo& info() const { return info_; }

private:
    const ClassInfo& info_;
};

} // namespace

NSString Object::description() const {
    return NSString::stringWithFormat(u"<%s: %p>", objectClass().name, static_cast<const void*>(this));
}

id::id(const char16_t* text) : id(NSString(text)) {}

id::id(const char* text) : id(NSString(text)) {}

std::ostream& operator<<(std::ostream& stream, const id& object) {
    return stream << (object ? object.description().utf8() : "(null)");
}

bool id::isEqual(const id& other) const {
    if (!object_ || !other.object_) return false;
    return object_ == other.object_ || object_->isEqual(*other.object_);
}

NSString id::description() const {
    // A string is its own description; going through the payload would copy it.
    if (NSString text = as<NSString>(*this)) return text;
    return object_ ? object_->description() : NSString();
}

Class::Class(const ClassInfo& info) : Handle(std::make_shared<ClassObject>(info)) {}

const ClassInfo& Class::classInfo() {
    return classClassInfo;
}

bool Class::accepts(const Object& payload) {
    return typeid(payload) == typeid(ClassObject);
}

const ClassInfo* Class::info() const {
    const auto* object = payload<ClassObject>();
    return object ? &object->info() : nullptr;
}

Class Class::of(const id& object) {
    if (Class itself = as<Class>(object)) return itself;
    const ClassInfo* info = object.objectClass();
    return info ? Class(*info) : Class();
}

} // namespace qrv
