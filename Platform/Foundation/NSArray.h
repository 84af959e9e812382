#pragma once

// Immutable ordered lists.

#include "Platform/Foundation/NSString.h"

#include <initializer_list>
#include <vector>

namespace qrv {

class QRV_EXPORT NSArray : public Handle<NSArray> {
public:
    using Handle::Handle;
    NSArray() = default;

    /// nil elements raise NSInvalidArgumentException.
    template <std::same_as<std::vector<id>> Elements>
    explicit NSArray(Elements elements) : NSArray(FromVector(), std::move(elements)) {}

    /// Braces always make elements: NSArray({array}) has one, the array. (NSArray{array}, without
    /// parentheses, is a copy for compilers that follow a later version of the language's rules.)
    NSArray(std::initializer_list<id> elements);
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + array
    static NSArray array() { return NSArray(std::vector<id>()); }

    /// 0 for nil.
    std::size_t count() const { return elements().size(); }

    // - objectAtIndex:
    /// Raises NSRangeException beyond the end.
    id objectAtIndex(std::size_t index) const;
    // - containsObject:
    bool containsObject(const id& object) const;
    // - arrayByAddingObject:
    NSArray arrayByAddingObject(const id& object) const;
    // - componentsJoinedByString:
    /// Joins the elements' descriptions; a nil receiver gives nil.
    NSString componentsJoinedByString(const NSString& separator) const;

    /// Empty for nil. Valid for as long as a handle to this payload exists.
    const std::vector<id>& elements() const;

    auto begin() const { return elements().begin(); }

    auto end() const { return elements().end(); }

private:
    struct FromVector {};

    NSArray(FromVector, std::vector<id>&& elements);
};

} // namespace qrv
