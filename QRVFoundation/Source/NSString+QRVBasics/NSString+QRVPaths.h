#pragma once

// Strings as paths and file names. Building them does not touch the disk; comparing standardises both paths,
// which looks at symbolic links before "..".

#include "Platform/Foundation/NSString.h"

namespace qrv {

// + qrvMaxFileNameCharacters
/// 255: the total for a file name, in UTF-16 units of canonical decomposition.
unsigned long qrvMaxFileNameCharacters();
// + qrvMaxPathLength
/// 1024: the longest path that callers may build, in bytes.
unsigned long qrvMaxPathLength();

// - qrvMakeFileNameCharactersValid
/// Every "/" becomes ":", every U+FFFC (object replacement character) goes.
NSString qrvMakeFileNameCharactersValid(const NSString& self);
// - qrvMakeFileNameValid
/// A valid file name of at most the usual total; the extension stays whole.
NSString qrvMakeFileNameValid(const NSString& self);
// - qrvMakeFileNameValidWithExtension:
/// The same of the receiver as stem and the extension.
NSString qrvMakeFileNameValidWithExtension(const NSString& self, const NSString& extension);
// - qrvMakeFileNameValidWithExtension:maxLength:
/// The stem without as many composed characters at its end as make it fit with "." and the extension into the
/// total; an empty or nil extension adds nothing. Fails an assertion when the extension and its dot exceed
/// the total.
NSString qrvMakeFileNameValidWithExtension_maxLength(const NSString& self, const NSString& extension,
                                                     unsigned long maxLength);
// - qrvMakeFileNameValidForCarbon
/// Every ":" becomes "/".
NSString qrvMakeFileNameValidForCarbon(const NSString& self);

// - qrvParent
NSString qrvParent(const NSString& self);
// - qrvName
NSString qrvName(const NSString& self);
// - qrvBasename
/// The name without its extension.
NSString qrvBasename(const NSString& self);
// - qrvPathExtension
NSString qrvPathExtension(const NSString& self);
// - qrvChild:
/// The path with the name as a further component.
NSString qrvChild(const NSString& self, const NSString& name);
// - qrvWithExtension:
NSString qrvWithExtension(const NSString& self, const NSString& extension);

// - qrvPathContainsPath:
/// The argument is the receiver or something below it, by whole components. False for nil.
bool qrvPathContainsPath(const NSString& self, const NSString& path);
// - qrvPathIsEqual:
/// Both are the same path once standardised. False for nil.
bool qrvPathIsEqual(const NSString& self, const NSString& path);

} // namespace qrv
