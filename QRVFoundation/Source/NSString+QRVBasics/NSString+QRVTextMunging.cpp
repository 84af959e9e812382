#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"

#include "Platform/Foundation/NSException.h"

#include <algorithm>

namespace qrv {

bool qrvHasCharacter_atIndex(const NSString& self, char16_t character, std::size_t index) {
    return index < self.length() && self.view()[index] == character;
}

NSString qrvJoin(const NSString& self, const NSArray& array) {
    return self.isNil() ? NSString() : array.componentsJoinedByString(self);
}

NSString qrvStringByEnsuringSuffix(const NSString& self, const NSString& suffix) {
    return self.isNil() || self.hasSuffix(suffix) ? self : self.stringByAppendingString(suffix);
}

NSString qrvFirstSpaceComponent(const NSString& self) {
    const std::size_t blank = self.view().find(u' ');
    return blank == std::u16string_view::npos ? self : self.substringToIndex(blank);
}

NSString qrvLastSpaceComponent(const NSString& self) {
    const std::size_t blank = self.view().rfind(u' ');
    return blank == std::u16string_view::npos ? self : self.substringFromIndex(blank + 1);
}

NSArray qrvComponentsSeparatedByLineSeparators(const NSString& self) {
    if (self.isNil()) return {};
    std::vector<id> lines;
    std::size_t end = 0;
    std::size_t contentsEnd = 0;
    while (contentsEnd < self.length() && end < self.length()) {
        const std::size_t start = end;
        self.getLineStart_end_contentsEnd_forRange(nullptr, &end, &contentsEnd, {start, 0});
        lines.push_back(self.substringWithRange({start, contentsEnd - start}));
    }
    return NSArray(std::move(lines));
}

NSString qrvStringByNormalizingLineBreaks(const NSString& self) {
    if (!qrvContainsCharacter(self, u'\r')) return self;
    const NSString withoutPairs = qrvStringByReplacingString_withString(self, u"\r\n", u"\n");
    return qrvStringByReplacingString_withString(withoutPairs, u"\r", u"\n");
}

NSString qrvStringByReplacingString_withString(const NSString& self, const NSString& string,
                                               const NSString& replacement) {
    return self.stringByReplacingOccurrencesOfString_withString(string, replacement);
}

NSString qrvStringByReplacingFirstOccurrenceOfString_withString(const NSString& self, const NSString& string,
                                                                const NSString& replacement) {
    const NSRange found = self.rangeOfString(string);
    if (found.location == NSNotFound) return self;
    std::u16string result(self.view());
    result.replace(found.location, found.length, replacement.view());
    return NSString(std::move(result));
}

NSString qrvStringByExpandingKeysInDictionary(const NSString& self, const NSDictionary& dictionary) {
    NSString result = self;
    for (const auto& [key, value] : dictionary) {
        result = qrvStringByReplacingString_withString(result, as<NSString>(key), value.description());
    }
    return result;
}

bool qrvContainsString(const NSString& self, const NSString& string) {
    return self.rangeOfString(string).location != NSNotFound;
}

bool qrvCaseInsensitiveContainsString(const NSString& self, const NSString& string) {
    return self.rangeOfString_options(string, NSCaseInsensitiveSearch).location != NSNotFound;
}

bool qrvHasCaseInsensitivePrefix(const NSString& self, const NSString& prefix) {
    constexpr unsigned long options = NSCaseInsensitiveSearch | NSAnchoredSearch;
    return self.rangeOfString_options(prefix, options).location != NSNotFound;
}

bool qrvHasDiacriticPrefix(const NSString& self, const NSString& prefix) {
    constexpr unsigned long options =
        NSAnchoredSearch | NSDiacriticInsensitiveSearch | NSWidthInsensitiveSearch;
    return self.rangeOfString_options(prefix, options).location != NSNotFound;
}

bool qrvHasDiacriticInsensitivePrefix(const NSString& self, const NSString& prefix) {
    constexpr unsigned long options =
        NSAnchoredSearch | NSDiacriticInsensitiveSearch | NSWidthInsensitiveSearch | NSCaseInsensitiveSearch;
    return self.rangeOfString_options(prefix, options).location != NSNotFound;
}

bool qrvCaseInsensitiveIsEqual(const NSString& self, const id& object) {
    const NSString other = as<NSString>(object);
    return self && other && self.caseInsensitiveCompare(other) == NSOrderedSame;
}

NSString qrvStringByStripping(const NSString& self) {
    return self.stringByTrimmingCharactersInSet(NSCharacterSet::whitespaceAndNewlineCharacterSet());
}

NSString qrvStringByTrimmingNulls(const NSString& self) {
    const std::u16string_view nul(u"\0", 1);
    return qrvStringByReplacingString_withString(self, nul, u"");
}

NSString qrvStringByKeepingCharactersInSet(const NSString& self, const NSCharacterSet& set) {
    if (self.isNil()) return {};
    std::u16string kept(self.view());
    std::erase_if(kept, [&](char16_t c) { return !set.characterIsMember(c); });
    return NSString(std::move(kept));
}

NSString qrvStringByChunking_with(const NSString& self, std::size_t length, const NSString& separator) {
    if (self.length() < 2) return self;
    if (length == 0) {
        throw NSException(NSInvalidArgumentException,
                          u"-[NSString qrvStringByChunking:with:]: chunks of length 0");
    }
    std::u16string result;
    std::u16string_view rest = self.view();
    while (rest.size() > length) {
        result.append(rest.substr(0, length)).append(separator.view());
        rest.remove_prefix(length);
    }
    return NSString(std::move(result.append(rest)));
}

bool qrvContainsCharacter(const NSString& self, char16_t character) {
    return self.view().find(character) != std::u16string_view::npos;
}

std::size_t qrvCountOccurrencesOfCharacter(const NSString& self, char16_t character) {
    const std::u16string_view text = self.view();
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), character));
}

bool qrvMatchesCharacterSet(const NSString& self, const NSCharacterSet& set) {
    const std::u16string_view text = self.view();
    return self &&
           std::all_of(text.begin(), text.end(), [&](char16_t c) { return set.characterIsMember(c); });
}

} // namespace qrv
