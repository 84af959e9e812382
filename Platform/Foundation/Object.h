#pragma once

// The root of every value this system passes around: an immutable payload with a class, equality, a hash and
// a description, and `id`, the handle that holds one or nothing (nil).
//
//     id x = NSNumber::numberWithInteger(5);
//     if (NSNumber n = as<NSNumber>(x)) use(n.integerValue());
//
// Handles copy cheaply and may be used from any thread, since payloads never change. Every operation of a
// handle is defined on nil.

#include <cstddef>
#include <memory>

namespace qrv {

class NSString;

/// A class at run time: its name and what it derives from. Compared by address.
struct ClassInfo {
    const char* name;
    const ClassInfo* superclass;

    /// True for the class itself and for each class it derives from.
    constexpr bool isSubclassOf(const ClassInfo& other) const {
        for (const ClassInfo* c = this; c; c = c->superclass) {
            if (c == &other) return true;
        }
        return false;
    }
};

/// A payload. Classes of one's own that are to be put into a user-info or a log line derive from it.
class Object {
public:
    static const ClassInfo classInfo;

    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    virtual const ClassInfo& objectClass() const { return classInfo; }

    /// Identity, unless a class defines its own equality (and then its own hash).
    virtual bool isEqual(const Object& other) const { return this == &other; }

    virtual std::size_t hash() const { return std::hash<const void*>{}(this); }

    /// "<Class: 0xaddress>", unless a class has a better one.
    virtual NSString description() const;
};

/// A handle on a payload, or nil.
class id {
public:
    id() = default;

    id(std::nullptr_t) {}

    /// Shares a payload. For the typed handles `as<>` is the way that checks the class.
    explicit id(std::shared_ptr<const Object> object) : object_(std::move(object)) {}

    bool isNil() const { return !object_; }

    explicit operator bool() const { return static_cast<bool>(object_); }

    /// The class of the payload; null for nil.
    const ClassInfo* objectClass() const { return object_ ? &object_->objectClass() : nullptr; }

    /// False for nil.
    bool isKindOfClass(const ClassInfo& other) const {
        return object_ && object_->objectClass().isSubclassOf(other);
    }

    /// False when either side is nil, as a message to nil answers no.
    bool isEqual(const id& other) const;

    bool isIdenticalTo(const id& other) const { return object_ == other.object_; }

    /// 0 for nil.
    std::size_t hash() const { return object_ ? object_->hash() : 0; }

    /// nil for nil.
    NSString description() const;

    /// The payload as a class or a capability (`BooleanValue`, `NSCoding`, ...), or null when it is none or
    /// nil.
    template <class T>
    const T* payload() const {
        return dynamic_cast<const T*>(object_.get());
    }

    const std::shared_ptr<const Object>& shared() const { return object_; }

    /// Equal, or both nil.
    friend bool operator==(const id& a, const id& b) { return (a.isNil() && b.isNil()) || a.isEqual(b); }

private:
    std::shared_ptr<const Object> object_;
};

/// `x` as a handle of type T, or nil when it is nil or of another kind.
template <class T>
T as(const id& x) {
    return x.isKindOfClass(T::classInfo()) ? T(x.shared()) : T();
}

/// A class as a value (what a user-info holds under "QRVExpectedType"). Described by the class's name.
class Class : public id {
public:
    using id::id;
    Class() = default;
    Class(const ClassInfo& info);
    static const ClassInfo& classInfo();

    /// The class meant; null for nil.
    const ClassInfo* info() const;
    /// The class of a value, a class being its own; nil for nil.
    static Class of(const id& object);
};

/// Capabilities that a payload may offer. A search for one with `id::payload<>()` is the counterpart of
/// asking an object whether it responds to a selector.
struct BooleanValue {
    virtual ~BooleanValue() = default;
    virtual bool boolValue() const = 0;
};

struct IntegerValue {
    virtual ~IntegerValue() = default;
    virtual long long integerValue() const = 0;
};

struct DoubleValue {
    virtual ~DoubleValue() = default;
    virtual double doubleValue() const = 0;
};

/// Marks payloads that an archiver can write.
struct NSCoding {
    virtual ~NSCoding() = default;
};

} // namespace qrv
