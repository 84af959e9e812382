#pragma once

// Information about the file at a path. Nothing reports an error: a file that cannot be examined does not
// exist. nil and texts that cannot be a path (with U+0000 or an unpaired surrogate) name no file.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSDate.h"

namespace qrv {

// - qrvFileModificationDateInterval
/// The modification time in whole seconds since the reference date, following links; 0 if the file cannot be
/// examined.
QRV_EXPORT double qrvFileModificationDateInterval(const NSString& self);
// - qrvFileModificationDate
/// The modification time as a date; the reference date for a missing file, never nil.
QRV_EXPORT NSDate qrvFileModificationDate(const NSString& self);
// - qrvCompareFileModificationDate:
/// Ascending if the receiver was modified before the other file.
QRV_EXPORT NSComparisonResult qrvCompareFileModificationDate(const NSString& self, const NSString& other);
// - qrvPathExists
/// Whether anything exists at the path, following links: a link without a target does not exist.
QRV_EXPORT bool qrvPathExists(const NSString& self);
// - qrvFileExists
/// Whether the path leads to a regular file, following links.
QRV_EXPORT bool qrvFileExists(const NSString& self);
// - qrvDirectoryExists
/// Whether the path leads to a directory, following links.
QRV_EXPORT bool qrvDirectoryExists(const NSString& self);
// - qrvSymbolicLinkExists
/// Whether the path itself is a symbolic link, with or without a target.
QRV_EXPORT bool qrvSymbolicLinkExists(const NSString& self);
// - qrvSpotlightKeywords
/// The keywords that the desktop stores for the file; an empty array if there are none, never nil.
QRV_EXPORT NSArray qrvSpotlightKeywords(const NSString& self);

} // namespace qrv
