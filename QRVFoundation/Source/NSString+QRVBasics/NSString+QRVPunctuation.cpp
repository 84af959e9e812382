#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVPunctuation.h"

namespace qrv {

NSString qrvEllipsis() {
    return u"\u2026";
}

NSString qrvEnDash() {
    return u"\u2013";
}

NSString qrvEmDash() {
    return u"\u2014";
}

NSString qrvLeftDoubleQuote() {
    return u"\u201C";
}

NSString qrvRightDoubleQuote() {
    return u"\u201D";
}

NSString qrvLeftSingleQuote() {
    return u"\u2018";
}

NSString qrvRightSingleQuote() {
    return u"\u2019";
}

NSString qrvLeftDoubleGuillemet() {
    return u"\u00AB";
}

NSString qrvRightDoubleGuillemet() {
    return u"\u00BB";
}

NSString qrvLeftSingleGuillemet() {
    return u"\u2039";
}

NSString qrvRightSingleGuillemet() {
    return u"\u203A";
}

NSString qrvDoubleQuotedString(const NSString& self) {
    return qrvLeftDoubleQuote().stringByAppendingString(self).stringByAppendingString(qrvRightDoubleQuote());
}

} // namespace qrv
