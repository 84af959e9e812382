#pragma once

// Percent escapes and query strings ("a=1&b=2").

#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

// - qrvDecodePercentEscapes
/// Every escape replaced by its character in UTF-8; nil when one is malformed.
NSString qrvDecodePercentEscapes(const NSString& self);
// - qrvDecodePercentEscapesKeepingEscaped:
/// The same, but for the escapes of the given characters. nil characters leave every escape.
NSString qrvDecodePercentEscapesKeepingEscaped(const NSString& self, const NSString& characters);
// - qrvEncodeForQueryString
/// What a URL may not hold is escaped in UTF-8, and "&" and "=". nil for text with an unpaired surrogate.
NSString qrvEncodeForQueryString(const NSString& self);
// - qrvEncodeURLKeepingUnescaped:
/// What a URL may not hold is escaped in UTF-8, but for the given characters.
NSString qrvEncodeURLKeepingUnescaped(const NSString& self, const NSString& characters);

// - qrvQueryStringDictionary
/// The pairs of a query string, decoded. Parts that are not one name, one "=" and one value, and those with a
/// malformed escape, are left out; of equal names the last counts. "+" stays. nil for nil.
NSDictionary qrvQueryStringDictionary(const NSString& self);
// + qrvQueryStringWithDictionary:
/// The pairs of the dictionary, sorted by name whatever the case. From system version 10.10 on "+" and ";"
/// are escaped too. Names and values that are no strings count by their description. "" for an empty
/// dictionary and nil.
NSString qrvQueryStringWithDictionary(const NSDictionary& dictionary);

} // namespace qrv
