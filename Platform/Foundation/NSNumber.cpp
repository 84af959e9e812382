#include "Platform/Foundation/NSNumber.h"

#include <array>
#include <charconv>
#include <cmath>
#include <compare>
#include <limits>
#include <typeinfo>
#include <variant>

namespace qrv {

namespace {

const ClassInfo numberClassInfo{"NSNumber", &Object::classInfo};

using Value = std::variant<bool, long long, unsigned long long, double>;

/// Represents every value of every kind exactly, so that equality is transitive.
using Exact = long double;
static_assert(std::numeric_limits<Exact>::digits >= 64);

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

    std::size_t hash() const override {
        const double value = doubleValue();
        return std::isnan(value) ? 0 : std::hash<double>{}(value);
    }

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

    unsigned long long unsignedValue() const {
        const double* d = std::get_if<double>(&value_);
        constexpr double limit = 18446744073709551616.0; // 2^64
        if (!d || !(*d > 0)) return static_cast<unsigned long long>(integerValue());
        return *d < limit ? static_cast<unsigned long long>(*d)
                          : std::numeric_limits<unsigned long long>::max();
    }

    /// NaN is equal to itself and comes before every number.
    std::weak_ordering compare(const NumberObject& other) const {
        const Exact a = exact();
        const Exact b = other.exact();
        if (std::isnan(a) || std::isnan(b)) return std::isnan(b) <=> std::isnan(a);
        return a < b   ? std::weak_ordering::less
               : a > b ? std::weak_ordering::greater
                       : std::weak_ordering::equivalent;
    }

    const Value& value() const { return value_; }

private:
    Exact exact() const {
        return std::visit([](auto v) { return static_cast<Exact>(v); }, value_);
    }

    /// Prints 16 significant digits, or 17 if 16 would read back as another value; "inf", "nan". The same in
    /// every locale.
    static NSString describeDouble(double value) {
        if (std::isnan(value)) return u"nan";
        std::array<char, 40> text{};
        char* end = nullptr;
        for (const int digits : {16, 17}) {
            end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general,
                                digits)
                      .ptr;
            double readBack = 0;
            std::from_chars(text.data(), end, readBack);
            if (readBack == value) break;
        }
        return NSString::fromUTF8({text.data(), end});
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

bool NSNumber::accepts(const Object& payload) {
    return typeid(payload) == typeid(NumberObject);
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
    const NumberObject* o = object(*this);
    return o ? o->unsignedValue() : 0;
}

double NSNumber::doubleValue() const {
    const NumberObject* o = object(*this);
    return o ? o->doubleValue() : 0;
}

NSComparisonResult NSNumber::compare(const NSNumber& other) const {
    const NumberObject* a = object(*this);
    const NumberObject* b = object(other);
    if (!a || !b) return a ? NSOrderedDescending : b ? NSOrderedAscending : NSOrderedSame;
    const std::weak_ordering order = a->compare(*b);
    return std::is_lt(order) ? NSOrderedAscending : std::is_gt(order) ? NSOrderedDescending : NSOrderedSame;
}

} // namespace qrv
