#include "Platform/Foundation/NSNumber.h"

#include <cmath>
#include <compare>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <variant>

namespace qrv {

namespace {

const ClassInfo numberClassInfo{"NSNumber", &Object::classInfo};

using Value = std::variant<bool, long long, unsigned long long, double>;

long long truncated(double value) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(value)) return 0;
    if (value >= limit) return std::numeric_limits<long long>::max();
    if (value < -limit) return std::numeric_limits<long long>::min();
    return static_cast<long long>(value);
}

class NumberObject final : public Object,
                           public NSCoding,
                           public BooleanValue,
                           public IntegerValue,
                           public DoubleValue {
public:
    explicit NumberObject(Value value) : value_(value) {}

    const ClassInfo& objectClass() const override { return numberClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const NumberObject*>(&other);
        return o && std::is_eq(compare(*o));
    }

    std::size_t hash() const override { return std::hash<double>{}(doubleValue()); }

    NSString description() const override {
        if (std::holds_alternative<double>(value_)) return describeDouble(doubleValue());
        if (isBeyondSigned())
            return NSString::stringWithFormat(u"%llu", std::get<unsigned long long>(value_));
        return NSString::stringWithFormat(u"%lld", integerValue());
    }

    bool boolValue() const override {
        return std::visit([](auto v) { return static_cast<bool>(v != 0); }, value_);
    }

    long long integerValue() const override {
        if (const double* d = std::get_if<double>(&value_)) return truncated(*d);
        return std::visit([](auto v) { return static_cast<long long>(v); }, value_);
    }

    double doubleValue() const override {
        return std::visit([](auto v) { return static_cast<double>(v); }, value_);
    }

    bool isBeyondSigned() const {
        const auto* v = std::get_if<unsigned long long>(&value_);
        return v && *v > static_cast<unsigned long long>(std::numeric_limits<long long>::max());
    }

    std::partial_ordering compare(const NumberObject& other) const {
        const bool anyDouble =
            std::holds_alternative<double>(value_) || std::holds_alternative<double>(other.value_);
        if (anyDouble) return doubleValue() <=> other.doubleValue();
        if (isBeyondSigned() != other.isBeyondSigned()) {
            return isBeyondSigned() ? std::partial_ordering::greater : std::partial_ordering::less;
        }
        if (isBeyondSigned()) {
            return std::get<unsigned long long>(value_) <=> std::get<unsigned long long>(other.value_);
        }
        return integerValue() <=> other.integerValue();
    }

    const Value& value() const { return value_; }

private:
    /// The shortest of 16 and 17 significant digits that reads back as the same value.
    static NSString describeDouble(double value) {
        char text[40];
        std::snprintf(text, sizeof text, "%.16g", value);
        if (std::strtod(text, nullptr) != value) std::snprintf(text, sizeof text, "%.17g", value);
        return NSString::stringWithUTF8String(text);
    }

    const Value value_;
};

const NumberObject* object(const NSNumber& number) {
    return number.payload<NumberObject>();
}

NSNumber make(Value value) {
    return NSNumber(std::make_shared<NumberObject>(value));
}

} // namespace

const ClassInfo& NSNumber::classInfo() {
    return numberClassInfo;
}

NSNumber NSNumber::numberWithBool(bool value) {
    return make(value);
}

NSNumber NSNumber::numberWithInteger(long long value) {
    return make(value);
}

NSNumber NSNumber::numberWithUnsignedInteger(unsigned long long value) {
    return make(value);
}

NSNumber NSNumber::numberWithDouble(double value) {
    return make(value);
}

bool NSNumber::isBoolean() const {
    const NumberObject* o = object(*this);
    return o && std::holds_alternative<bool>(o->value());
}

bool NSNumber::isFloatingPoint() const {
    const NumberObject* o = object(*this);
    return o && std::holds_alternative<double>(o->value());
}

bool NSNumber::isBeyondSigned() const {
    const NumberObject* o = object(*this);
    return o && o->isBeyondSigned();
}

bool NSNumber::boolValue() const {
    const NumberObject* o = object(*this);
    return o && o->boolValue();
}

long long NSNumber::integerValue() const {
    const NumberObject* o = object(*this);
    return o ? o->integerValue() : 0;
}

unsigned long long NSNumber::unsignedIntegerValue() const {
    return static_cast<unsigned long long>(integerValue());
}

double NSNumber::doubleValue() const {
    const NumberObject* o = object(*this);
    return o ? o->doubleValue() : 0;
}

NSComparisonResult NSNumber::compare(const NSNumber& other) const {
    const NumberObject* a = object(*this);
    const NumberObject* b = object(other);
    if (!a || !b) return a ? NSOrderedDescending : b ? NSOrderedAscending : NSOrderedSame;
    const std::partial_ordering order = a->compare(*b);
    return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
}

} // namespace qrv
