#pragma once

// Numbers and booleans. Numbers of different kinds compare by value, exactly: 1, 1.0 and true are equal, 2^53
// + 1 and the double 2^53 are not. NaN is equal to itself.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class QRV_EXPORT NSNumber : public Handle<NSNumber> {
public:
    using Handle::Handle;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + numberWithBool:
    static NSNumber numberWithBool(bool value);
    // + numberWithInteger:
    static NSNumber numberWithInteger(long long value);
    // + numberWithUnsignedInteger:
    static NSNumber numberWithUnsignedInteger(unsigned long long value);
    // + numberWithDouble:
    static NSNumber numberWithDouble(double value);

    /// Whether it was made from a boolean, which property lists distinguish from numbers.
    bool isBoolean() const;
    /// Whether it was made from a floating-point value.
    bool isFloatingPoint() const;
    /// Whether it was made from an unsigned value above the signed range.
    bool isBeyondSigned() const;

    // - boolValue
    /// Whether it is not zero; false for nil.
    bool boolValue() const;
    // - integerValue
    /// Truncates towards zero and clamps to the 64-bit range; 0 for nil and NaN.
    long long integerValue() const;
    // - unsignedIntegerValue
    /// A negative value wraps around, as on the platform; a floating-point value above the range is clamped.
    unsigned long long unsignedIntegerValue() const;
    // - doubleValue
    double doubleValue() const;
    // - compare:
    /// NaN comes before every number, nil before everything.
    NSComparisonResult compare(const NSNumber& other) const;

    /// By value; nil comes before every number.
    friend std::weak_ordering operator<=>(const NSNumber& a, const NSNumber& b) {
        if (a.isNil() || b.isNil()) return !a.isNil() <=> !b.isNil();
        return static_cast<long>(a.compare(b)) <=> 0L;
    }

    friend bool operator==(const NSNumber& a, const NSNumber& b) { return id(a) == id(b); }
};

} // namespace qrv
