#pragma once

// Errors for logs and archives: a full description, an error made from a caught exception, and an archivable
// copy. Every operation may be called from any thread.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSException.h"

namespace qrv {

// - qrvFullDescription
/// Returns "<NSError Domain=... Code=... UserInfo={...}>" with the whole user-info, underlying errors
/// included; keys are sorted and each level is indented by four blanks, so that the text is always the same.
/// Adds the standard description, failure reason and recovery suggestion if the user-info has none. If
/// "ErrorShortLogging" is set in the user defaults, also writes the short description to the system log. A
/// nil receiver gives nil.
QRV_EXPORT NSString qrvFullDescription(const NSError& self);

/// Returns the text of a value within a full description: strings in double quotes, collections with one
/// element per line, errors by their full description, anything else by its description. All lines but the
/// first are indented by four blanks. nil gives nil.
QRV_EXPORT NSString prettyPrint(const id& object);

// + qrvErrorFromException:
/// Makes an error of QRVErrorDomain, code 5, with the exception's user-info, its name as description, its
/// reason as recovery suggestion, and its name, reason and stack trace as failure reason. If the exception
/// supplies a short stack trace (NSException+QRVStackTrace.h), that is stored under "QRVShortFailureReason".
/// An exception with a nil name or reason raises NSInvalidArgumentException.
QRV_EXPORT NSError qrvErrorFromException(const NSException& exception);

// - qrvArchivableError
/// Returns a plain error in which values that cannot be archived are replaced by their descriptions. Nested
/// errors are made archivable in the same way; collections are kept whole. A nil receiver gives nil.
QRV_EXPORT NSError qrvArchivableError(const NSError& self);

} // namespace qrv
