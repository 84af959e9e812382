#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVQueryStrings.h"

#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSURLComponents.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "QRVFoundation/Source/NSProcessInfo+QRV.h"

#include <algorithm>

namespace qrv {

namespace {

void addPart(NSMutableDictionary& dictionary, std::u16string_view part) {
    const std::size_t equals = part.find(u'=');
    if (equals == std::u16string_view::npos || part.find(u'=', equals + 1) != std::u16string_view::npos)
        return;
    const NSString key = qrvDecodePercentEscapes(NSString(part.substr(0, equals)));
    const NSString value = qrvDecodePercentEscapes(NSString(part.substr(equals + 1)));
    if (key && value) dictionary.setObject_forKey(value, key);
}

using Pair = std::pair<NSString, NSString>;

std::vector<Pair> sortedPairs(const NSDictionary& dictionary) {
    std::vector<Pair> pairs;
    for (const auto& [key, value] : dictionary) pairs.emplace_back(key.description(), value.description());
    std::stable_sort(pairs.begin(), pairs.end(), [](const Pair& a, const Pair& b) {
        return a.first.caseInsensitiveCompare(b.first) == NSOrderedAscending;
    });
    return pairs;
}

NSString queryByHand(const std::vector<Pair>& pairs) {
    std::vector<id> parts;
    parts.reserve(pairs.size());
    for (const auto& [key, value] : pairs) {
        parts.push_back(NSString::stringWithFormat(u"%@=%@", qrvEncodeForQueryString(key),
                                                   qrvEncodeForQueryString(value)));
    }
    return NSArray(std::move(parts)).componentsJoinedByString(u"&");
}

NSString queryByComponents(const std::vector<Pair>& pairs) {
    std::vector<NSURLQueryItem> items;
    items.reserve(pairs.size());
    for (const auto& [key, value] : pairs)
        items.push_back(NSURLQueryItem::queryItemWithName_value(key, value));
    NSURLComponents components;
    components.setQueryItems(std::move(items));
    // The components do not encode "+" and ";", which some servers read as a blank and a delimiter.
    static const auto& allowed = // never destroyed
        *new NSCharacterSet(NSCharacterSet::URLQueryAllowedCharacterSet().removing(u";+").adding(u"&=%"));
    return components.percentEncodedQuery().stringByAddingPercentEncodingWithAllowedCharacters(allowed);
}

} // namespace

NSString qrvDecodePercentEscapes(const NSString& self) {
    return qrvDecodePercentEscapesKeepingEscaped(self, u"");
}

NSString qrvDecodePercentEscapesKeepingEscaped(const NSString& self, const NSString& characters) {
    return CFURLCreateStringByReplacingPercentEscapes(self, characters);
}

NSString qrvEncodeForQueryString(const NSString& self) {
    return CFURLCreateStringByAddingPercentEscapes(self, NSString(), u"&=");
}

NSString qrvEncodeURLKeepingUnescaped(const NSString& self, const NSString& characters) {
    return CFURLCreateStringByAddingPercentEscapes(self, characters, NSString());
}

NSDictionary qrvQueryStringDictionary(const NSString& self) {
    if (self.isNil()) return {};
    NSMutableDictionary dictionary;
    std::u16string_view rest = self.view();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(u'&'), rest.size());
        addPart(dictionary, rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return std::move(dictionary).copy();
}

NSString qrvQueryStringWithDictionary(const NSDictionary& dictionary) {
    const std::vector<Pair> pairs = sortedPairs(dictionary);
    return qrvIsMacOSAtLeast10_10() ? queryByComponents(pairs) : queryByHand(pairs);
}

} // namespace qrv
