#pragma once

// Questions about the running system and process. Nothing here has state or keeps an answer, and every
// operation may be called from any thread; a query that fails gives 0, nil, "unknown" or false.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSProcessInfo.h"

#include <cstdint>

namespace qrv {

// Whether the platform is at least of the version in the name: by the number of its foundation library up to
// 10.10 and for the developer beta, by the system's version for the others.

// + qrvIsMacOSAtLeast10_8
bool qrvIsMacOSAtLeast10_8();
// + qrvIsMacOSAtLeast10_9
bool qrvIsMacOSAtLeast10_9();
// + qrvIsMacOSAtLeast10_10
bool qrvIsMacOSAtLeast10_10();
// + qrvIsMacOSAtLeast10_11
bool qrvIsMacOSAtLeast10_11();
// + qrvIsMacOSAtLeast10_12
bool qrvIsMacOSAtLeast10_12();
// + qrvIsMacOSAtLeast10_12_2
bool qrvIsMacOSAtLeast10_12_2();
// + qrvIsMacOSAtLeast10_13
bool qrvIsMacOSAtLeast10_13();
// + qrvIsMacOSAtLeast10_13_2
bool qrvIsMacOSAtLeast10_13_2();
// + qrvIsMacOSAtLeast10_14
bool qrvIsMacOSAtLeast10_14();
// + qrvIsMacOSAtLeast10_15
bool qrvIsMacOSAtLeast10_15();
// + qrvIsMacOSAtLeast10_15_4
bool qrvIsMacOSAtLeast10_15_4();
// + qrvIsMacOSAtLeast10_15DeveloperBeta5
bool qrvIsMacOSAtLeast10_15DeveloperBeta5();

// + qrvIsOperatingSystemAtLeastVersion:
/// False for every version where the platform is older than 10.10.
bool qrvIsOperatingSystemAtLeastVersion(NSOperatingSystemVersion version);

// + qrvGetOperatingSystemVersion:fromString:error:
/// Reads "major.minor" or "major.minor.patch", each the leading digits of its piece, 0 without any. With
/// another number of pieces, or no destination, false and NSOSStatusErrorDomain -50 "Error parsing OS
/// version: ...".
bool qrvGetOperatingSystemVersion_fromString_error(NSOperatingSystemVersion* version, const NSString& string,
                                                   NSError* error);

// + qrvOSVersionString
/// Such as "10.15.7".
NSString qrvOSVersionString();

// + qrvMaximumOpenFilesCount
/// The soft limit; 0 when it cannot be found out.
std::uint64_t qrvMaximumOpenFilesCount();

// + qrvSetMaximumOpenFilesCount:
/// Sets the soft and the hard limit, both; a failure is not reported.
void qrvSetMaximumOpenFilesCount(std::uint64_t count);

// + qrvIsMacAppStoreVersion
/// Always false.
bool qrvIsMacAppStoreVersion();

// + qrvIsInAppSandbox
/// The boolean "QRVAppSandbox" of the standard user defaults.
bool qrvIsInAppSandbox();

// + qrvIsInXcode
/// Whether the environment holds "__XCODE_BUILT_PRODUCTS_DIR_PATHS", whatever its value.
bool qrvIsInXcode();

// + qrvHardwareModel
/// "unknown" where the machine does not say.
NSString qrvHardwareModel();

// + qrvMaxPhysicalProcessorCount
/// The number of cores; 0 when it cannot be found out.
std::int32_t qrvMaxPhysicalProcessorCount();

// + qrvMaxProcessorFrequency
/// In hertz; 0 when it cannot be found out.
std::int64_t qrvMaxProcessorFrequency();

// + qrvSysctlStringForKey:
/// The value of a system-information name (see Platform/Foundation/Sysctl.h) up to its first zero byte; nil
/// for an unknown name and for bytes that are not UTF-8.
NSString qrvSysctlStringForKey(const NSString& key);

// + qrvSysctlInt32ForKey:
/// 0 for an unknown name and for a value that does not have 4 bytes.
std::int32_t qrvSysctlInt32ForKey(const NSString& key);

// + qrvSysctlInt64ForKey:
/// 0 for an unknown name and for a value that does not have 8 bytes.
std::int64_t qrvSysctlInt64ForKey(const NSString& key);

// + qrvIsBSDProcessRunning:
/// Whether a process of the current user has this short name: the executable's name cut to 16 bytes, compared
/// byte for byte. A longer name never matches. Raises NSInternalInconsistencyException when the process table
/// cannot be read.
bool qrvIsBSDProcessRunning(const NSString& name);

// + qrvPreventPartialLaunching
/// Asks that the system not end the process while it waits for messages from others.
void qrvPreventPartialLaunching();

} // namespace qrv
