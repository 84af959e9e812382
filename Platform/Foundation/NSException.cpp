#include "Platform/Foundation/NSException.h"

namespace qrv {

NSException::NSException(NSString name, NSString reason, NSDictionary userInfo)
    : name_(std::move(name)), reason_(std::move(reason)), userInfo_(std::move(userInfo)),
      what_(name_.utf8() + ": " + reason_.utf8()) {}

void NSException::doesNotRecognizeSelector(const NSString& className, const NSString& selector) {
    throw NSException(
        NSInvalidArgumentException,
        NSString::stringWithFormat(u"-[%@ %@]: unrecognized selector sent to instance", className, selector));
}

} // namespace qrv
