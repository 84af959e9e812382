#pragma once

// The root of all values: an immutable payload with a class, equality, a hash and a description, and `id`,
// the handle that holds a payload or nothing (nil).
//
//     id x = NSNumber::numberWithInteger(5);
//     if (NSNumber n = as<NSNumber>(x)) use(n.integerValue());
//
// Handles are cheap to copy and may be used from any thread, since payloads never change. Every operation of
// a handle is defined on nil.

#include "Platform/Foundation/Export.h"

#include <concepts>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <type_traits>
#include <utility>

namespace qrv {

class NSString;

/// A run-time class: its name and its superclass. Compared by address.
struct QRV_EXPORT ClassInfo {
    const char* name;
    const ClassInfo* superclass;

    /// True for the class itself and its superclasses.
    constexpr bool isSubclassOf(const ClassInfo& other) const {
        for (const ClassInfo* c = this; c; c = c->superclass) {
            if (c == &other) return true;
        }
        return false;
    }
};

/// A payload. Derive from it to put objects of your own into a user-info or a log line.
class QRV_EXPORT Object {
public:
    static const ClassInfo classInfo;

    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    virtual const ClassInfo& objectClass() const { return classInfo; }

    /// Compares by identity, unless a class overrides it (and `hash` with it).
    virtual bool isEqual(const Object& other) const { return this == &other; }

    virtual std::size_t hash() const { return std::hash<const void*>{}(this); }

    /// "<Class: 0xaddress>", unless a class overrides it.
    virtual NSString description() const;
};

/// A handle to a payload, or nil.
class QRV_EXPORT id {
public:
    id() = default;

    id(std::nullptr_t) {}

    /// The text as an NSString: UTF-16, or UTF-8 in which every invalid sequence is replaced by U+FFFD. A
    /// null pointer gives nil.
    id(const char16_t* text);
    id(const char* text);

    /// A number is an object as an NSNumber only; and 0 is not nil.
    template <class Number>
    requires std::is_arithmetic_v<Number> || std::is_enum_v<Number> id(Number)
    = delete;

    /// Shares a payload.
    explicit id(std::shared_ptr<const Object> object) : object_(std::move(object)) {}

    bool isNil() const { return !object_; }

    explicit operator bool() const { return static_cast<bool>(object_); }

    /// The class of the payload; null for nil.
    const ClassInfo* objectClass() const { return object_ ? &object_->objectClass() : nullptr; }

    /// False for nil.
    bool isKindOfClass(const ClassInfo& other) const {
        return object_ && object_->objectClass().isSubclassOf(other);
    }

    /// False if either side is nil, as a message to nil answers.
    bool isEqual(const id& other) const;

    bool isIdenticalTo(const id& other) const { return object_ == other.object_; }

    /// 0 for nil.
    std::size_t hash() const { return object_ ? object_->hash() : 0; }

    /// A nil handle gives nil.
    NSString description() const;

    /// The payload as a class or capability (`BooleanValue`, `NSCoding`, ...); null if it is of another kind
    /// or nil.
    template <class T>
    const T* payload() const {
        return dynamic_cast<const T*>(object_.get());
    }

    const std::shared_ptr<const Object>& shared() const { return object_; }

    /// Equal, or both nil.
    friend bool operator==(const id& a, const id& b) { return (a.isNil() && b.isNil()) || a.isEqual(b); }

    /// Writes the description in UTF-8, "(null)" for nil.
    friend std::ostream& operator<<(std::ostream& stream, const id& object);

private:
    std::shared_ptr<const Object> object_;
};

/// What typed handles are made of: an `id` whose payload, if there is one, is of the class `Self`, which says
/// in `accepts` what such a payload is. A payload of another class, whatever class it claims to be of, gives
/// nil.
template <class Self>
class QRV_EXPORT Handle : public id {
public:
    Handle() = default;

    Handle(std::nullptr_t) {}

    explicit Handle(const std::shared_ptr<const Object>& payload)
        : id(payload && Self::accepts(*payload) ? payload : nullptr) {}

    explicit Handle(std::shared_ptr<const Object>&& payload)
        : id(payload && Self::accepts(*payload) ? std::move(payload) : nullptr) {}

    /// Values of two classes are never equal.
    template <class Other>
    requires std::derived_from<Other, Handle<Other>> &&
        (!std::derived_from<Other, Self>)&&(!std::derived_from<Self, Other>)friend bool
        operator==(const Self&, const Other&) = delete;
};

/// `x` as a handle of type T, or nil if it is nil or of another kind.
template <class T>
T as(const id& x) {
    return T(x.shared());
}

/// A class as a value, as a user-info holds it under "QRVExpectedType". Described by its name.
class QRV_EXPORT Class : public Handle<Class> {
public:
    using Handle::Handle;
    Class() = default;
    Class(const ClassInfo& info);
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    /// The class it stands for; null for nil.
    const ClassInfo* info() const;
    /// The class of a value; a class is its own. nil gives nil.
    static Class of(const id& object);
};

/// Capabilities that a payload may offer. Ask for one with `id::payload<>()`, which corresponds to asking an
/// object whether it responds to a selector.
struct QRV_EXPORT BooleanValue {
    virtual ~BooleanValue() = default;
    virtual bool boolValue() const = 0;
};

struct QRV_EXPORT IntegerValue {
    virtual ~IntegerValue() = default;
    virtual long long integerValue() const = 0;
};

struct QRV_EXPORT DoubleValue {
    virtual ~DoubleValue() = default;
    virtual double doubleValue() const = 0;
};

/// Marks payloads that an archiver can write.
struct QRV_EXPORT NSCoding {
    virtual ~NSCoding() = default;
};

} // namespace qrv

/// @cond
template <std::derived_from<qrv::id> Value>
struct std::hash<Value> {
    std::size_t operator()(const Value& value) const { return value.hash(); }
};

/// @endcond
