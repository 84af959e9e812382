#include "Source/Tools/batch/Conversion/BatchError.h"

#include "Platform/Foundation/NSError.h"

#include <cerrno>

namespace qrv::batch {

ConversionError batchError(BatchErrorCode code, std::string text) {
    return {BatchErrorDomain, code, std::move(text)};
}

bool canPass(const ConversionError& error) {
    const NSString domain = NSString::fromUTF8(error.domain);
    if (error.domain == BatchErrorDomain) return error.code == BatchToolEndedError;
    if (domain.isEqual(NSString(NSPOSIXErrorDomain))) return error.code == ENOMEM;
    // The engine ended; it did not answer, which the deadline of the whole run is told apart from by its
    // text.
    if (domain.isEqual(NSString(NSURLErrorDomain)))
        return error.code == NSURLErrorNetworkConnectionLost ||
               (error.code == NSURLErrorTimedOut && error.text != "The deadline has passed.");
    return false;
}

} // namespace qrv::batch
