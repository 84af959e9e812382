#pragma once

// Sets of UTF-16 units.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class QRV_EXPORT NSCharacterSet : public Handle<NSCharacterSet> {
public:
    using Handle::Handle;
    NSCharacterSet() = default;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + characterSetWithCharactersInString:
    /// nil gives the empty set.
    static NSCharacterSet characterSetWithCharactersInString(const NSString& characters);
    // + whitespaceAndNewlineCharacterSet
    /// White space and line breaks of every script, tabs included.
    static NSCharacterSet whitespaceAndNewlineCharacterSet();
    // + URLQueryAllowedCharacterSet
    /// The characters that the query of a URL may contain unescaped.
    static NSCharacterSet URLQueryAllowedCharacterSet();

    // - characterIsMember:
    /// False for nil.
    bool characterIsMember(char16_t character) const;

    /// Returns the set with the characters of a text added or removed. nil counts as the empty set.
    NSCharacterSet adding(const NSString& characters) const;
    NSCharacterSet removing(const NSString& characters) const;
};

} // namespace qrv
