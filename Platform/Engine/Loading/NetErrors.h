#pragma once

// Maps the engine's network errors to NSURLErrorDomain.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURL.h"

#include <string_view>

namespace qrv::engine {

/// Makes the error of a load of `url` (nil if unknown) that failed with `text` ("net::ERR_ABORTED", with or
/// without "net::"); an unknown text gives NSURLErrorUnknown. Both failing-URL keys get the address.
NSError urlError(std::string_view text, const NSURL& url);

/// Makes the error with this code, and with the description unless it is nil.
NSError urlError(long long code, const NSURL& url, const NSString& description = {});

} // namespace qrv::engine
