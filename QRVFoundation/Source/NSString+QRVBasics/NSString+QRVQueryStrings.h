#pragma once

// Percent-encoding and query strings ("a=1&b=2").

#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

// - qrvDecodePercentEscapes
/// Percent-decodes as UTF-8; nil for a malformed escape.
QRV_EXPORT NSString qrvDecodePercentEscapes(const NSString& self);
// - qrvDecodePercentEscapesKeepingEscaped:
/// Percent-decodes all but the given characters. If the characters are nil, every escape stays.
QRV_EXPORT NSString qrvDecodePercentEscapesKeepingEscaped(const NSString& self, const NSString& characters);
// - qrvEncodeForQueryString
/// Percent-encodes, in UTF-8, what a URL must not contain, and "&" and "=". nil for text with an unpaired
/// surrogate.
QRV_EXPORT NSString qrvEncodeForQueryString(const NSString& self);
// - qrvEncodeURLKeepingUnescaped:
/// Percent-encodes, in UTF-8, what a URL must not contain, except the given characters.
QRV_EXPORT NSString qrvEncodeURLKeepingUnescaped(const NSString& self, const NSString& characters);

// - qrvQueryStringDictionary
/// Returns the decoded pairs of a query string. Parts without exactly one "=", or with a malformed escape,
/// are left out; of equal names the last one counts. "+" stays. nil gives nil.
QRV_EXPORT NSDictionary qrvQueryStringDictionary(const NSString& self);
// + qrvQueryStringWithDictionary:
/// Makes a query string of the dictionary's pairs, sorted by name ignoring case. From system version 10.10
/// on, "+" and ";" are percent-encoded too. Names and values that are not strings count by their description.
/// "" for an empty dictionary and for nil.
QRV_EXPORT NSString qrvQueryStringWithDictionary(const NSDictionary& dictionary);

} // namespace qrv
