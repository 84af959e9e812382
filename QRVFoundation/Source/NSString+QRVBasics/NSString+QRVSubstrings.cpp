// Substrings by index, by composed characters too.

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/Unicode.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVPunctuation.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"
#include "QRVFoundation/Source/QRVFunctions.h"

namespace qrv {

namespace {

/// Returns the longest prefix that ends with a composed character and whose decomposition has at most `limit`
/// units. Walks forward, so that a long text costs no more than the part that is kept.
std::u16string_view stemWithin(std::u16string_view text, std::size_t limit) {
    unicode::ComposedSequences sequences(text);
    std::size_t kept = 0;
    std::size_t used = 0;
    while (const auto sequence = sequences.next()) {
        used += unicode::decomposedLength(text.substr(sequence->start, sequence->end - sequence->start));
        if (used > limit) break;
        kept = sequence->end;
    }
    return text.substr(0, kept);
}

} // namespace

NSString qrvStringByAddingSuffix_trimmingStemToTotal(const NSString& self, const NSString& suffix,
                                                     unsigned long total) {
    if (self.isNil()) return {};
    if (suffix.length() > total) {
        QRVFunctions::assertionFailedForFile_line_object_selector_format(
            "QRVFoundation/Source/NSString+QRVBasics", __LINE__, self,
            "qrvStringByAddingSuffix:trimmingStemToTotal:", u"suffix: '%@' length: %llu", suffix,
            static_cast<unsigned long long>(total));
    }
    const std::size_t ofSuffix = unicode::decomposedLength(suffix.view());
    const std::u16string_view stem = stemWithin(self.view(), total > ofSuffix ? total - ofSuffix : 0);
    return NSString(std::u16string(stem).append(suffix.view()));
}

NSString qrvSubstringToString(const NSString& self, const NSString& string) {
    if (self.isNil()) return {};
    const NSRange found = self.rangeOfString(string);
    return found.location == NSNotFound ? NSString(u"") : self.substringToIndex(found.location);
}

NSString qrvSubstringFromString(const NSString& self, const NSString& string) {
    if (self.isNil()) return {};
    const NSRange found = self.rangeOfString(string);
    return found.location == NSNotFound ? NSString(u"")
                                        : self.substringFromIndex(found.location + found.length);
}

NSString qrvSubstringToIndex(const NSString& self, std::size_t index) {
    return index >= self.length() ? self : self.substringToIndex(index);
}

NSString qrvSubstringToComposedIndex(const NSString& self, std::size_t index) {
    if (index >= self.length()) return self;
    return self.substringToIndex(self.rangeOfComposedCharacterSequenceAtIndex(index).location);
}

NSString qrvSubstringFromIndex(const NSString& self, std::size_t index) {
    if (self.isNil()) return {};
    return index >= self.length() ? NSString(u"") : self.substringFromIndex(index);
}

NSString qrvStringByChopping(const NSString& self) {
    return self.length() == 0 ? self : self.substringToIndex(self.length() - 1);
}

NSString qrvStringByChoppingComposedCharacter(const NSString& self) {
    if (self.isNil()) return {};
    return self.length() < 2 ? NSString(u"") : qrvSubstringToComposedIndex(self, self.length() - 1);
}

NSString qrvStringByTruncatingMiddleAfterComposedLength(const NSString& self, std::size_t length) {
    if (length >= self.length() - self.length() / 2) return self;
    const NSRange middle =
        qrvRangeOfComposedCharacterSequencesInRange(self, {length, self.length() - 2 * length});
    std::u16string result(self.view());
    result.replace(middle.location, middle.length, qrvEllipsis().view());
    return NSString(std::move(result));
}

NSRange qrvRangeOfComposedCharacterSequencesInRange(const NSString& self, NSRange range) {
    if (self.isNil()) return {};
    const bool inside = range.location < self.length() && range.length <= self.length() - range.location;
    // There is nothing before the first unit.
    if (!inside || range.location + range.length == 0) {
        throw NSException(NSRangeException,
                          NSString::stringWithFormat(u"Invalid range %@.", NSStringFromRange(range)));
    }
    const std::size_t start = self.rangeOfComposedCharacterSequenceAtIndex(range.location).location;
    const NSRange last = self.rangeOfComposedCharacterSequenceAtIndex(range.location + range.length - 1);
    return {start, last.location + last.length - start};
}

} // namespace qrv
