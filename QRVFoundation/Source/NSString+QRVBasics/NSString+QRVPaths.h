#pragma once

// Strings as paths and file names. Building them does not access the disk; comparing standardises both paths,
// which resolves symbolic links before "..".

#include "Platform/Foundation/NSString.h"

namespace qrv {

// + qrvMaxFileNameCharacters
/// 255: the maximum length of a file name, in UTF-16 units of its canonical decomposition.
QRV_EXPORT unsigned long qrvMaxFileNameCharacters();
// + qrvMaxPathLength
/// 1024: the maximum length of a path, in bytes.
QRV_EXPORT unsigned long qrvMaxPathLength();

// - qrvMakeFileNameCharactersValid
/// Replaces "/" by ":" and removes U+FFFC (object replacement character).
QRV_EXPORT NSString qrvMakeFileNameCharactersValid(const NSString& self);
// - qrvMakeFileNameValid
/// Makes a valid file name of at most the maximum length, without shortening the extension.
QRV_EXPORT NSString qrvMakeFileNameValid(const NSString& self);
// - qrvMakeFileNameValidWithExtension:
/// Makes a valid file name with the receiver as stem and the extension.
QRV_EXPORT NSString qrvMakeFileNameValidWithExtension(const NSString& self, const NSString& extension);
// - qrvMakeFileNameValidWithExtension:maxLength:
/// Shortens the stem, by composed characters at its end, until it fits with "." and the extension into the
/// maximum length; an empty or nil extension adds nothing. Fails an assertion if the extension and its dot
/// alone exceed the length.
QRV_EXPORT NSString qrvMakeFileNameValidWithExtension_maxLength(const NSString& self,
                                                                const NSString& extension,
                                                                unsigned long maxLength);
// - qrvMakeFileNameValidForCarbon
/// Replaces ":" by "/".
QRV_EXPORT NSString qrvMakeFileNameValidForCarbon(const NSString& self);

// - qrvParent
QRV_EXPORT NSString qrvParent(const NSString& self);
// - qrvName
QRV_EXPORT NSString qrvName(const NSString& self);
// - qrvBasename
/// The name without its extension.
QRV_EXPORT NSString qrvBasename(const NSString& self);
// - qrvPathExtension
QRV_EXPORT NSString qrvPathExtension(const NSString& self);
// - qrvChild:
/// Appends the name as a path component.
QRV_EXPORT NSString qrvChild(const NSString& self, const NSString& name);
// - qrvWithExtension:
QRV_EXPORT NSString qrvWithExtension(const NSString& self, const NSString& extension);

// - qrvPathContainsPath:
/// Whether the argument is the receiver or below it, by whole components. False for nil.
QRV_EXPORT bool qrvPathContainsPath(const NSString& self, const NSString& path);
// - qrvPathIsEqual:
/// Whether both are the same path after standardising. False for nil.
QRV_EXPORT bool qrvPathIsEqual(const NSString& self, const NSString& path);

} // namespace qrv
