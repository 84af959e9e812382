#pragma once

// Percent-encoding, of bytes and of characters in UTF-8 ("%C3%A9").

#include "Platform/Foundation/NSString.h"

#include <functional>
#include <string>
#include <string_view>

namespace qrv {

/// What a URL may contain besides letters and digits: reserved and unreserved characters, and the "%" of
/// escapes.
inline constexpr std::string_view charactersOfURLs = "-._~:/?#[]@!$&'()*+,;=%";

/// Percent-encodes every byte that is neither an ASCII letter or digit nor one of `kept`.
std::string percentEscaped(std::string_view bytes, std::string_view kept = charactersOfURLs);

/// Replaces every escape by its byte; malformed ones stay.
std::string percentDecoded(std::string_view text);

/// Percent-encodes every character that `stays` rejects. Returns nil for nil and for text with an unpaired
/// surrogate.
NSString addPercentEscapes(const NSString& text, const std::function<bool(char32_t)>& stays);

// The two functions of the URL library, with UTF-8.

/// Decodes every escape except those of the characters in `charactersToLeaveEscaped`; if that is nil, the
/// text stays unchanged. Returns nil for nil, for a malformed escape and for escapes that are not UTF-8.
NSString CFURLCreateStringByReplacingPercentEscapes(const NSString& text,
                                                    const NSString& charactersToLeaveEscaped);
/// Percent-encodes characters that a URL must not contain ("%" and "#" among them), except those in
/// `toLeaveUnescaped`, and also those in `legalToBeEscaped`. Returns nil for nil and for text with an
/// unpaired surrogate.
NSString CFURLCreateStringByAddingPercentEscapes(const NSString& text, const NSString& toLeaveUnescaped,
                                                 const NSString& legalToBeEscaped);

} // namespace qrv
