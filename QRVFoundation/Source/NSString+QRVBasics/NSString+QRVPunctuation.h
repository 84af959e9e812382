#pragma once

// Typographic punctuation, each a string of one character.

#include "Platform/Foundation/NSString.h"

namespace qrv {

// + qrvEllipsis
QRV_EXPORT NSString qrvEllipsis();
// + qrvEnDash
QRV_EXPORT NSString qrvEnDash();
// + qrvEmDash
QRV_EXPORT NSString qrvEmDash();
// + qrvLeftDoubleQuote
QRV_EXPORT NSString qrvLeftDoubleQuote();
// + qrvRightDoubleQuote
QRV_EXPORT NSString qrvRightDoubleQuote();
// + qrvLeftSingleQuote
QRV_EXPORT NSString qrvLeftSingleQuote();
// + qrvRightSingleQuote
QRV_EXPORT NSString qrvRightSingleQuote();
// + qrvLeftDoubleGuillemet
QRV_EXPORT NSString qrvLeftDoubleGuillemet();
// + qrvRightDoubleGuillemet
QRV_EXPORT NSString qrvRightDoubleGuillemet();
// + qrvLeftSingleGuillemet
QRV_EXPORT NSString qrvLeftSingleGuillemet();
// + qrvRightSingleGuillemet
QRV_EXPORT NSString qrvRightSingleGuillemet();

// - qrvDoubleQuotedString
/// Puts the text in typographic double quotes; nil counts as the empty text.
QRV_EXPORT NSString qrvDoubleQuotedString(const NSString& self);

} // namespace qrv
