#include "QRVFoundation/Source/QRVNSLogWriter.h"

#include "Platform/Logging/NSLog.h"

namespace qrv {

void QRVNSLogWriter::writePrefix_message_area(const NSString& prefix, const NSString& message,
                                              const NSString&) {
    NSLog(u"%@", combinePrefix_andMessage(prefix, message));
}

} // namespace qrv
