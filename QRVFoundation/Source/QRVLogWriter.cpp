#include "QRVFoundation/Source/QRVLogWriter.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSProcessInfo.h"

namespace qrv {

namespace {

bool isFlagInEnvironment(const char16_t* name) {
    const NSDictionary environment = NSProcessInfo::processInfo().environment();
    return as<NSString>(environment.objectForKey(NSString(name))).boolValue();
}

} // namespace

QRVLogWriter::QRVLogWriter() : _isInXcode(isFlagInEnvironment(u"QRVIsInXcode")) {}

NSString QRVLogWriter::combinePrefix_andMessage(const NSString& prefix, const NSString& message) const {
    return NSString::stringWithFormat(u"%@ %@", prefix, message);
}

void QRVLogWriter::writePrefix_message_area(const NSString&, const NSString&, const NSString&) {
    NSException::doesNotRecognizeSelector(u"QRVLogWriter", u"writePrefix:message:area:");
}

} // namespace qrv
