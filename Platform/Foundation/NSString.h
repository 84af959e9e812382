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
class NSCharacterSet;
class NSData;

/// Text encodings, with the original platform's values.
enum NSStringEncoding : unsigned long {
    NSASCIIStringEncoding = 1,
    NSJapaneseEUCStringEncoding = 3,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
    /// ASCII with backslash escapes for all else: "\351", "\u20ac", "\\".
    NSNonLossyASCIIStringEncoding = 7,
    NSShiftJISStringEncoding = 8,
    NSISOLatin2StringEncoding = 9,
    /// Written with a byte-order mark; read by it, big-endian without one.
    NSUTF16StringEncoding = 10,
    NSWindowsCP1251StringEncoding = 11,
    NSWindowsCP1252StringEncoding = 12,
    NSWindowsCP1253StringEncoding = 13,
    NSWindowsCP1254StringEncoding = 14,
    NSWindowsCP1250StringEncoding = 15,
    NSISO2022JPStringEncoding = 21,
    NSMacOSRomanStringEncoding = 30,
    NSUTF32StringEncoding = 0x8C000100,
    NSUTF16BigEndianStringEncoding = 0x90000100,
    NSUTF16LittleEndianStringEncoding = 0x94000100,
    NSUTF32BigEndianStringEncoding = 0x98000100,
    NSUTF32LittleEndianStringEncoding = 0x9C000100,
};

enum NSComparisonResult : long { NSOrderedAscending = -1, NSOrderedSame = 0, NSOrderedDescending = 1 };

/// Search and comparison options, as bits with the original platform's values.
enum NSStringCompareOptions : unsigned long {
    NSCaseInsensitiveSearch = 1,
    NSLiteralSearch = 2,
    NSAnchoredSearch = 8,
    /// By the rules of the user's language.
    kCFCompareLocalized = 32,
    /// Numbers inside the texts compare by value.
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

    // - rangeOfString:options:
    /// The first occurrence under the options case-, diacritic- and width-insensitive, anchored (at the start
    /// only) and literal. Without "literal" canonically equivalent texts match, and only whole characters
    /// with their marks do. {NSNotFound, 0} without one and for an empty or nil argument.
    NSRange rangeOfString_options(const NSString& other, unsigned long options) const;
    // - compare:options:
    /// Under the options case-, diacritic- and width-insensitive, or localized and numeric with or without
    /// case-insensitive; canonically equivalent texts are the same. nil compares as the empty string.
    NSComparisonResult compare_options(const NSString& other, unsigned long options) const;
    // - caseInsensitiveCompare:
    NSComparisonResult caseInsensitiveCompare(const NSString& other) const;

    // - rangeOfComposedCharacterSequenceAtIndex:
    /// The user-perceived character that holds the unit: base with marks, surrogate pair, emoji sequence,
    /// flag. Raises NSRangeException beyond the end. To walk a whole text use unicode::ComposedSequences.
    NSRange rangeOfComposedCharacterSequenceAtIndex(std::size_t index) const;
    // - decomposedStringWithCanonicalMapping
    /// nil for nil.
    NSString decomposedStringWithCanonicalMapping() const;
    // - getLineStart:end:contentsEnd:forRange:
    /// The line or lines that the range touches: their start, the start of the next one, and where the last
    /// one's terminator (LF, CR, CR LF, U+0085, U+2028, U+2029) starts. Null pointers are left out. Raises
    /// NSRangeException beyond the end.
    void getLineStart_end_contentsEnd_forRange(std::size_t* start, std::size_t* end, std::size_t* contentsEnd,
                                               NSRange range) const;

    // - initWithData:encoding:
    /// nil for nil, for bytes that are not text in this encoding and for an encoding that is not known.
    static NSString initWithData_encoding(const NSData& data, unsigned long encoding);
    // - dataUsingEncoding:
    /// nil for nil, for text that the encoding can't hold whole and for an encoding that is not known.
    NSData dataUsingEncoding(unsigned long encoding) const;

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

    // - stringByTrimmingCharactersInSet:
    /// Without the units of the set at both ends; nil for nil.
    NSString stringByTrimmingCharactersInSet(const NSCharacterSet& set) const;
    // - stringByAddingPercentEncodingWithAllowedCharacters:
    /// Every unit that is not ASCII or not in the set becomes the percent escapes of its character's UTF-8.
    /// nil for nil and for text with an unpaired surrogate.
    NSString stringByAddingPercentEncodingWithAllowedCharacters(const NSCharacterSet& allowed) const;

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
    // - pathExtension
    /// What follows the last dot of the last component, unless the dot is its first or last character.
    NSString pathExtension() const;
    // - stringByDeletingPathExtension
    /// Without the extension, its dot and slashes at the end.
    NSString stringByDeletingPathExtension() const;
    // - stringByAppendingPathComponent:
    /// With one slash between each two components and none at the end.
    NSString stringByAppendingPathComponent(const NSString& component) const;
    // - stringByAppendingPathExtension:
    /// Before slashes at the end, which go. An empty or nil extension, and a receiver without a name, change
    /// nothing else.
    NSString stringByAppendingPathExtension(const NSString& extension) const;
    // - stringByStandardizingPath
    /// "~" and "~name" at the start become the home folder; empty and "." components and slashes at the end
    /// go; in an absolute path ".." leads to the real parent folder, also out of a symbolic link, as far as
    /// the folder is there.
    NSString stringByStandardizingPath() const;
    // - pathComponents
    /// The components; a slash at the start or the end counts as one.
    NSArray pathComponents() const;
    // - stringWithFileSystemRepresentation:length:
    /// nil for a null pointer and for bytes that are not UTF-8.
    static NSString stringWithFileSystemRepresentation_length(const char* bytes, std::size_t length);
    // - fileSystemRepresentation
    /// The bytes that name the file: UTF-8. Empty, which names nothing, for nil and for text that no path can
    /// be: with U+0000 or an unpaired surrogate.
    std::string fileSystemRepresentation() const;
};

} // namespace qrv
