#pragma once

// Sets of UTF-16 units.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class NSCharacterSet : public id {
public:
    using id::id;
    NSCharacterSet() = default;
    static const ClassInfo& classInfo();

    // + characterSetWithCharactersInString:
    /// nil makes the empty set.
    static NSCharacterSet characterSetWithCharactersInString(const NSString& characters);
    // + whitespaceAndNewlineCharacterSet
    /// Blanks and line breaks of every script, the tabulator included.
    static NSCharacterSet whitespaceAndNewlineCharacterSet();
    // + URLQueryAllowedCharacterSet
    /// What the query of a URL may hold unescaped (RFC 3986).
    static NSCharacterSet URLQueryAllowedCharacterSet();

    // - characterIsMember:
    /// False for nil.
    bool characterIsMember(char16_t character) const;

    /// The set with the characters of a text added or taken out. For nil as for the empty set.
    NSCharacterSet adding(const NSString& characters) const;
    NSCharacterSet removing(const NSString& characters) const;
};

} // namespace qrv
