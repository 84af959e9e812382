#pragma once

// Numbers and booleans. Numbers compare by value whatever their kind, and exactly: 1, 1.0 and true are equal,
// 2^53 + 1 and the double 2^53 are not. Not-a-number is equal to itself.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class NSNumber : public id {
public:
    using id::id;
    static const ClassInfo& classInfo();

    // + numberWithBool:
    static NSNumber numberWithBool(bool value);
    // + numberWithInteger:
    static NSNumber numberWithInteger(long long value);
    // + numberWithUnsignedInteger:
    static NSNumber numberWithUnsignedInteger(unsigned long long value);
    // + numberWithDouble:
    static NSNumber numberWithDouble(double value);

    /// Made as a boolean (a property list tells these from numbers).
    bool isBoolean() const;
    /// Made from a floating-point value.
    bool isFloatingPoint() const;
    /// Made as an unsigned value above the signed range.
    bool isBeyondSigned() const;

    // - boolValue
    /// Not zero. False for nil.
    bool boolValue() const;
    // - integerValue
    /// Truncated towards zero and held to the 64-bit range; 0 for nil and for no-numbers.
    long long integerValue() const;
    // - unsignedIntegerValue
    /// A negative value wraps, as the platform has it; a larger floating-point value is held to the range.
    unsigned long long unsignedIntegerValue() const;
    // - doubleValue
    double doubleValue() const;
    // - compare:
    /// Not-a-number stands before every number, nil before everything.
    NSComparisonResult compare(const NSNumber& other) const;
};

} // namespace qrv
