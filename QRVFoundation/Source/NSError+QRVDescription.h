#pragma once

// Errors on their journey: a full text for logs, an error made of a caught exception, and a copy that can be
// archived. Every operation may be called from any thread.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSException.h"

namespace qrv {

// - qrvFullDescription
/// "<NSError Domain=... Code=... UserInfo={...}>" with the whole user-info, its keys in ascending order and
/// each level indented by four blanks, underlying errors included; the same text each time. Adds the standard
/// description, failure reason and recovery suggestion where the user-info has none. When "ErrorShortLogging"
/// is set in the user defaults, the short description is also written to the system log. nil for nil.
NSString qrvFullDescription(const NSError& self);

/// The text of a value within a full description: strings in double quotes, collections with an element a
/// line, errors by their full description, anything else by its description. All lines but the first are
/// indented by four blanks. nil for nil.
NSString prettyPrint(const id& object);

// + qrvErrorFromException:
/// An error of QRVErrorDomain, code 5, with the exception's user-info, its name as description, its reason
/// as recovery suggestion, and name, reason and stack trace as failure reason; where the exception supplies a
/// short stack trace (NSException+QRVStackTrace.h) also "QRVShortFailureReason". An exception with a nil name
/// or reason raises NSInvalidArgumentException.
NSError qrvErrorFromException(const NSException& exception);

// - qrvArchivableError
/// A plain error whose values that no archiver can write are replaced by their descriptions; nested errors
/// are made archivable in turn, collections are kept whole. nil for nil.
NSError qrvArchivableError(const NSError& self);

} // namespace qrv
