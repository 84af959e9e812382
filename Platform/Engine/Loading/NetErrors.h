#pragma once

// The engine's network errors as errors of NSURLErrorDomain.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURL.h"

#include <string_view>

namespace qrv::engine {

/// The error of a load of `url` (nil when unknown) that the engine ended with `text` ("net::ERR_ABORTED",
/// with or without the "net::"); an unknown text gives NSURLErrorUnknown. The address is put under both
/// failing-URL keys.
NSError urlError(std::string_view text, const NSURL& url);

/// The same with a code, and a description of its own when one is given.
NSError urlError(long long code, const NSURL& url, const NSString& description = {});

} // namespace qrv::engine
