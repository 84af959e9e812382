#pragma once

// Immutable text: UTF-16, as the original platform counts it. Lengths and indexes are UTF-16 code units.
//
//     NSString name = u"page";
//     NSString line = NSString::stringWithFormat(u"%@: %d objects", name, 3);

#include "Platform/Foundation/FormatArguments.h"
#include "Platform/Foundation/NSRange.h"
#include "Platform/Foundation/Object.h"

#include <string>
#include <string_view>

namespace qrv {

class NSArray;
class NSData;
class NSError;

/// Text encodings, with the original platform's values.
enum NSStringEncoding : unsigned long {
    NSASCIIStringEncoding = 1,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
    NSNonLossyASCIIStringEncoding = 7,
    NSUTF16StringEncoding = 10,
    NSMacOSRomanStringEncoding = 30,
    NSUTF32LittleEndianStringEncoding = 0x9C000100,
};

enum NSComparisonResult : long { NSOrderedAscending = -1, NSOrderedSame = 0, NSOrderedDescending = 1 };

/// Search and comparison options, as bits with the original platform's values.
enum NSStringCompareOptions : unsigned long {
    NSCaseInsensitiveSearch = 1,
    NSLiteralSearch = 2,
    NSBackwardsSearch = 4,
    NSAnchoredSearch = 8,
    NSNumericSearch = 64,
    NSDiacriticInsensitiveSearch = 128,
    NSWidthInsensitiveSearch = 256,
};

class NSString : public id {
public:
    using id::id;
    NSString() = default;
    NSString(const char16_t* text);
    NSString(std::u16string_view text);

    NSString(const std::u16string& text) : NSString(std::u16string_view(text)) {}

    NSString(std::u16string&& text);
    static const ClassInfo& classInfo();

    // + stringWithUTF8String:
    /// nil for a null pointer and for bytes that are not UTF-8.
    static NSString stringWithUTF8String(const char* bytes);
    /// The text with every invalid sequence replaced by U+FFFD: for bytes of unknown origin that must be
    /// shown.
    static NSString fromUTF8(std::string_view bytes);

    // + stringWithFormat:
    /// Expands %@ and the printf conversions; see FormatArguments.h.
    template <class... Arguments>
    static NSString stringWithFormat(const NSString& format, const Arguments&... arguments) {
        return stringWithFormat_arguments(format, FormatArguments(arguments...));
    }

    // + stringWithFormat:arguments:
    static NSString stringWithFormat_arguments(const NSString& format, const FormatArguments& arguments);

    /// 0 for nil.
    std::size_t length() const { return view().size(); }

    /// The units, valid as long as any handle on this payload lives. Empty for nil.
    std::u16string_view view() const;
    // - characterAtIndex:
    /// Raises NSRangeException beyond the end.
    char16_t characterAtIndex(std::size_t index) const;
    /// UTF-8 for use by this program: an unpaired surrogate becomes U+FFFD; empty for nil.
    std::string utf8() const;

    // - isEqualToString:
    /// Same units. False when either is nil.
    bool isEqualToString(const NSString& other) const;
    // - compare:
    /// By units. nil compares as the empty string.
    NSComparisonResult compare(const NSString& other) const;
    // - hasPrefix:
    /// False for an empty or nil prefix, as the platform has it.
    bool hasPrefix(const NSString& prefix) const;
    // - hasSuffix:
    bool hasSuffix(const NSString& suffix) const;
    // - rangeOfString:
    /// The first literal occurrence, or {NSNotFound, 0}; an empty argument is never found.
    NSRange rangeOfString(const NSString& other) const;

    // - substringFromIndex:
    /// Raises NSRangeException beyond the end.
    NSString substringFromIndex(std::size_t index) const;
    // - substringToIndex:
    NSString substringToIndex(std::size_t index) const;
    // - substringWithRange:
    NSString substringWithRange(NSRange range) const;
    // - stringByAppendingString:
    NSString stringByAppendingString(const NSString& other) const;
    // - stringByReplacingOccurrencesOfString:withString:
    /// Every occurrence, left to right, without overlap; an empty search text changes nothing.
    NSString stringByReplacingOccurrencesOfString_withString(const NSString& search,
                                                             const NSString& replacement) const;
    // - componentsSeparatedByString:
    /// At least one piece, except for nil, which gives nil.
    NSArray componentsSeparatedByString(const NSString& separator) const;

    // - boolValue
    /// True when the first character after white space, a sign and zeros is Y, y, T, t or 1 to 9.
    bool boolValue() const;
    // - integerValue
    /// The leading decimal number after white space, held to the 64-bit range; 0 without one.
    long long integerValue() const;
    // - doubleValue
    /// The leading decimal number after white space; 0 without one.
    double doubleValue() const;

    // - lastPathComponent
    NSString lastPathComponent() const;
    // - stringByDeletingLastPathComponent
    NSString stringByDeletingLastPathComponent() const;
    // - fileSystemRepresentation
    /// The bytes that name the file: UTF-8. Empty, which names nothing, for nil and for text that no path can
    /// be: with U+0000 or an unpaired surrogate.
    std::string fileSystemRepresentation() const;
};

} // namespace qrv
