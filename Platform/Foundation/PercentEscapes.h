#pragma once

// Percent escapes, of bytes and of characters in UTF-8 ("%C3%A9").

#include "Platform/Foundation/NSString.h"

#include <functional>
#include <string>
#include <string_view>

namespace qrv {

/// What a URL may hold beside letters and digits: reserved and unreserved characters, and the "%" of escapes.
inline constexpr std::string_view charactersOfURLs = "-._~:/?#[]@!$&'()*+,;=%";

/// Every byte is escaped that is neither an ASCII letter or digit nor one of `kept`.
std::string percentEscaped(std::string_view bytes, std::string_view kept = charactersOfURLs);

/// Every escape becomes its byte; malformed ones stay.
std::string percentDecoded(std::string_view text);

/// Every character that `stays` says no to is escaped. nil for nil and for text with an unpaired surrogate.
NSString addPercentEscapes(const NSString& text, const std::function<bool(char32_t)>& stays);

// The two functions of the URL library, with UTF-8.

/// Every escape is replaced by its character, but for those of the characters in `charactersToLeaveEscaped`.
/// nil for nil, for a malformed escape and for escapes that are not UTF-8; unchanged without that argument
/// (nil).
NSString CFURLCreateStringByReplacingPercentEscapes(const NSString& text,
                                                    const NSString& charactersToLeaveEscaped);
/// Characters that a URL may not hold are escaped ("%" and "#" among them), but for those in
/// `toLeaveUnescaped`, and besides them those in `legalToBeEscaped`. nil for nil and for text with an
/// unpaired surrogate.
NSString CFURLCreateStringByAddingPercentEscapes(const NSString& text, const NSString& toLeaveUnescaped,
                                                 const NSString& legalToBeEscaped);

} // namespace qrv
