#pragma once

// Immutable text in UTF-16, as on the platform. Lengths and indexes count UTF-16 code units.
//
//     NSString name = u"page";
//     NSString line = NSString::stringWithFormat(u"%@: %d objects", name, 3);

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSRange.h"
#include "Platform/Foundation/Object.h"

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace qrv {

class NSArray;
class NSCharacterSet;
class NSData;

/// Text encodings, with the platform's values.
enum NSStringEncoding : unsigned long {
    NSASCIIStringEncoding = 1,
    NSJapaneseEUCStringEncoding = 3,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
    /// ASCII, with backslash escapes for everything else: "\351", "\u20ac", "\\".
    NSNonLossyASCIIStringEncoding = 7,
    NSShiftJISStringEncoding = 8,
    NSISOLatin2StringEncoding = 9,
    /// Written with a byte-order mark; read according to it, or big-endian without one.
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

/// Search and comparison options, as bits with the platform's values.
enum NSStringCompareOptions : unsigned long {
    NSCaseInsensitiveSearch = 1,
    NSLiteralSearch = 2,
    NSAnchoredSearch = 8,
    /// Compares by the rules of the user's language.
    kCFCompareLocalized = 32,
    /// Compares numbers inside the texts by value.
    NSNumericSearch = 64,
    NSDiacriticInsensitiveSearch = 128,
    NSWidthInsensitiveSearch = 256,
};

class QRV_EXPORT NSString : public Handle<NSString> {
public:
    using Handle::Handle;
    NSString() = default;
    /// Ends in a zero; a null pointer gives nil.
    NSString(const char16_t* text);
    NSString(std::u16string_view text);

    NSString(const std::u16string& text) : NSString(std::u16string_view(text)) {}

    NSString(std::u16string&& text);
    /// UTF-8, in which every invalid sequence is replaced by U+FFFD; a null pointer gives nil.
    NSString(const char* text);
    NSString(std::string_view text);

    NSString(const std::string& text) : NSString(std::string_view(text)) {}

    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + stringWithUTF8String:
    /// Returns nil for a null pointer and for bytes that are not UTF-8.
    static NSString stringWithUTF8String(const char* bytes);
    /// Replaces every invalid sequence by U+FFFD: for bytes of unknown origin that must be shown.
    static NSString fromUTF8(std::string_view bytes);

    // + stringWithFormat:
    /// Expands %@ and the printf conversions (see FormatArguments.h). A literal is checked while it is
    /// compiled.
    template <class... Arguments>
    static NSString stringWithFormat(FormatFor<Arguments...> format, const Arguments&... arguments) {
        return expanded(format, PassedFormatArguments(arguments...));
    }

    // + stringWithFormat:arguments:
    static NSString stringWithFormat_arguments(const NSString& format, const FormatArguments& arguments);
    /// Expands a format that a function has got as FormatFor; nil for a nil one.
    static NSString expanded(const AnyFormat& format, FormatArgumentSpan arguments);

    /// 0 for nil.
    std::size_t length() const { return view().size(); }

    /// The UTF-16 units, valid for as long as a handle to this payload exists. Empty for nil.
    std::u16string_view view() const;
    // - characterAtIndex:
    /// An index beyond the end raises NSRangeException.
    char16_t characterAtIndex(std::size_t index) const;
    /// The units of an object that is a string; nothing for others and nil.
    static std::optional<std::u16string_view> viewOf(const id& object);
    /// The text in UTF-8, with U+FFFD for unpaired surrogates; empty for nil.
    std::string utf8() const;

    explicit operator std::string() const { return utf8(); }

    explicit operator std::u16string_view() const { return view(); }

    /// By units; nil is equal to nil only, and comes before every text.
    friend std::strong_ordering operator<=>(const NSString& a, const NSString& b) {
        if (a.isNil() || b.isNil()) return !a.isNil() <=> !b.isNil();
        return a.view() <=> b.view();
    }

    friend bool operator==(const NSString& a, const NSString& b) {
        return a.view() == b.view() && a.isNil() == b.isNil();
    }

    /// A literal or a standard string, in UTF-16 or UTF-8; a null pointer is nil.
    template <class Text>

    requires(std::convertible_to<const Text&, std::u16string_view> ||
             std::convertible_to<const Text&, std::string_view>) &&
        (!std::derived_from<Text, id> && !std::is_null_pointer_v<Text>)friend bool
        operator==(const NSString& a, const Text& b) {
        if constexpr (std::is_pointer_v<Text>) {
            if (!b) return a.isNil();
        }
        if constexpr (std::convertible_to<const Text&, std::u16string_view>)
            return !a.isNil() && a.view() == std::u16string_view(b);
        else
            return a == NSString(std::string_view(b));
    }

    // - isEqualToString:
    /// Compares by units; false if either is nil.
    bool isEqualToString(const NSString& other) const;
    // - compare:
    /// Compares by units; nil counts as the empty string.
    NSComparisonResult compare(const NSString& other) const;
    // - hasPrefix:
    /// False for an empty or nil prefix, as on the platform.
    bool hasPrefix(const NSString& prefix) const;
    // - hasSuffix:
    bool hasSuffix(const NSString& suffix) const;
    // - rangeOfString:
    /// Returns the first literal occurrence, or {NSNotFound, 0}. An empty argument is never found.
    NSRange rangeOfString(const NSString& other) const;

    // - rangeOfString:options:
    /// Returns the first occurrence. Options: case-, diacritic- and width-insensitive, anchored (at the start
    /// only) and literal. Unless "literal" is set, canonically equivalent texts match, and only whole
    /// characters with their marks do. Returns {NSNotFound, 0} if there is none and for an empty or nil
    /// argument.
    NSRange rangeOfString_options(const NSString& other, unsigned long options) const;
    // - compare:options:
    /// Options: case-, diacritic- and width-insensitive; or localized and numeric, with or without
    /// case-insensitive. Canonically equivalent texts are equal. nil counts as the empty string.
    NSComparisonResult compare_options(const NSString& other, unsigned long options) const;
    // - caseInsensitiveCompare:
    NSComparisonResult caseInsensitiveCompare(const NSString& other) const;

    // - rangeOfComposedCharacterSequenceAtIndex:
    /// Returns the range of the user-perceived character at the index: base with marks, surrogate pair, emoji
    /// sequence, flag. An index beyond the end raises NSRangeException. To iterate over a whole text use
    /// unicode::ComposedSequences.
    NSRange rangeOfComposedCharacterSequenceAtIndex(std::size_t index) const;
    // - decomposedStringWithCanonicalMapping
    /// A nil receiver gives nil.
    NSString decomposedStringWithCanonicalMapping() const;
    // - getLineStart:end:contentsEnd:forRange:
    /// Finds the lines that the range touches: the start of the first line, the start of the line after them,
    /// and where the last one's terminator (LF, CR, CR LF, U+0085, U+2028, U+2029) begins. Null pointers are
    /// ignored. A range beyond the end raises NSRangeException.
    void getLineStart_end_contentsEnd_forRange(std::size_t* start, std::size_t* end, std::size_t* contentsEnd,
                                               NSRange range) const;

    // - initWithData:encoding:
    /// Returns nil for nil, for bytes that are not valid in this encoding and for an unknown encoding.
    static NSString initWithData_encoding(const NSData& data, unsigned long encoding);
    // - dataUsingEncoding:
    /// Returns nil for nil, for text that the encoding cannot represent completely and for an unknown
    /// encoding.
    NSData dataUsingEncoding(unsigned long encoding) const;

    // - substringFromIndex:
    /// An index beyond the end raises NSRangeException.
    NSString substringFromIndex(std::size_t index) const;
    // - substringToIndex:
    NSString substringToIndex(std::size_t index) const;
    // - substringWithRange:
    NSString substringWithRange(NSRange range) const;
    // - stringByAppendingString:
    NSString stringByAppendingString(const NSString& other) const;
    // - stringByReplacingOccurrencesOfString:withString:
    /// Replaces every occurrence, from left to right, without overlap. An empty search text changes nothing.
    NSString stringByReplacingOccurrencesOfString_withString(const NSString& search,
                                                             const NSString& replacement) const;
    // - componentsSeparatedByString:
    /// Returns at least one piece; a nil receiver gives nil.
    NSArray componentsSeparatedByString(const NSString& separator) const;

    // - stringByTrimmingCharactersInSet:
    /// Removes the units of the set from both ends. A nil receiver gives nil.
    NSString stringByTrimmingCharactersInSet(const NSCharacterSet& set) const;
    // - stringByAddingPercentEncodingWithAllowedCharacters:
    /// Percent-encodes, in UTF-8, every character that is not ASCII or not in the set. Returns nil for nil
    /// and for text with an unpaired surrogate.
    NSString stringByAddingPercentEncodingWithAllowedCharacters(const NSCharacterSet& allowed) const;

    // - boolValue
    /// True if the first character after white space, a sign and zeros is Y, y, T, t or 1 to 9.
    bool boolValue() const;
    // - integerValue
    /// The leading decimal number after white space, clamped to the 64-bit range; 0 if there is none.
    long long integerValue() const;
    // - doubleValue
    /// The leading decimal number after white space; 0 if there is none.
    double doubleValue() const;

    // - lastPathComponent
    NSString lastPathComponent() const;
    // - stringByDeletingLastPathComponent
    NSString stringByDeletingLastPathComponent() const;
    // - pathExtension
    /// The text after the last dot of the last component, unless that dot is its first or last character.
    NSString pathExtension() const;
    // - stringByDeletingPathExtension
    /// Removes the extension with its dot, and trailing slashes.
    NSString stringByDeletingPathExtension() const;
    // - stringByAppendingPathComponent:
    /// Joins with exactly one slash between components and none at the end.
    NSString stringByAppendingPathComponent(const NSString& component) const;
    // - stringByAppendingPathExtension:
    /// Appends a dot and the extension, after removing trailing slashes. An empty or nil extension, or a
    /// receiver without a name, appends nothing.
    NSString stringByAppendingPathExtension(const NSString& extension) const;
    // - stringByStandardizingPath
    /// Replaces a leading "~" or "~name" by the home folder, removes empty and "." components and trailing
    /// slashes, and resolves ".." in absolute paths to the real parent folder, through symbolic links, as far
    /// as the folder exists.
    NSString stringByStandardizingPath() const;
    // - pathComponents
    /// Splits the path; a leading or trailing slash counts as a component.
    NSArray pathComponents() const;
    // + stringWithFileSystemRepresentation:length:
    /// The path of these bytes, whatever they are: those that are not UTF-8 become unpaired surrogates
    /// (U+DC80 to U+DCFF), which show as U+FFFD everywhere else. Returns nil for a null pointer.
    static NSString stringWithFileSystemRepresentation_length(const char* bytes, std::size_t length);
    /// The same for bytes that are there.
    static NSString fromFileSystem(std::string_view bytes);
    // - fileSystemRepresentation
    /// The path's bytes. Empty, which names no file, for nil and for text that cannot be a path: with U+0000
    /// or an unpaired surrogate that stands for no byte.
    std::string fileSystemRepresentation() const;
};

} // namespace qrv
