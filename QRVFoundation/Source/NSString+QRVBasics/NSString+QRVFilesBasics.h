#pragma once

// What the file system says about the path that a string is. Nothing here reports an error: what can't be
// examined does not exist. nil and texts that no path can be (with U+0000 or an unpaired surrogate) name
// nothing.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSDate.h"

namespace qrv {

// - qrvFileModificationDateInterval
/// The modification time in whole seconds since the reference date, links followed; 0 when the file can't be
/// examined.
double qrvFileModificationDateInterval(const NSString& self);
// - qrvFileModificationDate
/// The same as a date: the reference date itself for a missing file, never nil.
NSDate qrvFileModificationDate(const NSString& self);
// - qrvCompareFileModificationDate:
/// Ascending when the receiver was changed before the other file.
NSComparisonResult qrvCompareFileModificationDate(const NSString& self, const NSString& other);
// - qrvPathExists
/// Something is there, links followed: a link without its target does not exist.
bool qrvPathExists(const NSString& self);
// - qrvFileExists
/// A regular file is there, links followed.
bool qrvFileExists(const NSString& self);
// - qrvDirectoryExists
/// A directory is there, links followed.
bool qrvDirectoryExists(const NSString& self);
// - qrvSymbolicLinkExists
/// The path itself is a symbolic link, whether or not its target is there.
bool qrvSymbolicLinkExists(const NSString& self);
// - qrvSpotlightKeywords
/// The keywords that the desktop keeps for the file; an empty array when there are none, never nil.
NSArray qrvSpotlightKeywords(const NSString& self);

} // namespace qrv
