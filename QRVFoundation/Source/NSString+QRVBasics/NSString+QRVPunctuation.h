#pragma once

// Typographic punctuation, each a string of one character.

#include "Platform/Foundation/NSString.h"

namespace qrv {

// + qrvEllipsis
NSString qrvEllipsis();
// + qrvEnDash
NSString qrvEnDash();
// + qrvEmDash
NSString qrvEmDash();
// + qrvLeftDoubleQuote
NSString qrvLeftDoubleQuote();
// + qrvRightDoubleQuote
NSString qrvRightDoubleQuote();
// + qrvLeftSingleQuote
NSString qrvLeftSingleQuote();
// + qrvRightSingleQuote
NSString qrvRightSingleQuote();
// + qrvLeftDoubleGuillemet
NSString qrvLeftDoubleGuillemet();
// + qrvRightDoubleGuillemet
NSString qrvRightDoubleGuillemet();
// + qrvLeftSingleGuillemet
NSString qrvLeftSingleGuillemet();
// + qrvRightSingleGuillemet
NSString qrvRightSingleGuillemet();

// - qrvDoubleQuotedString
/// Puts the text in typographic double quotes; nil counts as the empty text.
NSString qrvDoubleQuotedString(const NSString& self);

} // namespace qrv
