#pragma once

// Information about the running system and process. Nothing is cached, and every operation may be called from
// any thread. A query that fails gives 0, nil, "unknown" or false.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSProcessInfo.h"

#include <cstdint>

namespace qrv {

// Whether the platform has at least the version in the name: by its foundation library's number up to 10.10
// and for the developer beta, by the system's version otherwise.

// + qrvIsMacOSAtLeast10_8
QRV_EXPORT bool qrvIsMacOSAtLeast10_8();
// + qrvIsMacOSAtLeast10_9
QRV_EXPORT bool qrvIsMacOSAtLeast10_9();
// + qrvIsMacOSAtLeast10_10
QRV_EXPORT bool qrvIsMacOSAtLeast10_10();
// + qrvIsMacOSAtLeast10_11
QRV_EXPORT bool qrvIsMacOSAtLeast10_11();
// + qrvIsMacOSAtLeast10_12
QRV_EXPORT bool qrvIsMacOSAtLeast10_12();
// + qrvIsMacOSAtLeast10_12_2
QRV_EXPORT bool qrvIsMacOSAtLeast10_12_2();
// + qrvIsMacOSAtLeast10_13
QRV_EXPORT bool qrvIsMacOSAtLeast10_13();
// + qrvIsMacOSAtLeast10_13_2
QRV_EXPORT bool qrvIsMacOSAtLeast10_13_2();
// + qrvIsMacOSAtLeast10_14
QRV_EXPORT bool qrvIsMacOSAtLeast10_14();
// + qrvIsMacOSAtLeast10_15
QRV_EXPORT bool qrvIsMacOSAtLeast10_15();
// + qrvIsMacOSAtLeast10_15_4
QRV_EXPORT bool qrvIsMacOSAtLeast10_15_4();
// + qrvIsMacOSAtLeast10_15DeveloperBeta5
QRV_EXPORT bool qrvIsMacOSAtLeast10_15DeveloperBeta5();

// + qrvIsOperatingSystemAtLeastVersion:
/// Always false if the platform is older than 10.10.
QRV_EXPORT bool qrvIsOperatingSystemAtLeastVersion(NSOperatingSystemVersion version);

// + qrvGetOperatingSystemVersion:fromString:error:
/// Parses "major.minor" or "major.minor.patch"; each part counts by its leading digits, 0 if it has none. For
/// another number of parts, or a null destination, returns false and NSOSStatusErrorDomain -50 "Error parsing
/// OS version: ...".
QRV_EXPORT bool qrvGetOperatingSystemVersion_fromString_error(NSOperatingSystemVersion* version,
                                                              const NSString& string, NSError* error);

// + qrvOSVersionString
/// For example "10.15.7".
QRV_EXPORT NSString qrvOSVersionString();

// + qrvMaximumOpenFilesCount
/// The soft limit; 0 if it cannot be determined.
QRV_EXPORT std::uint64_t qrvMaximumOpenFilesCount();

// + qrvSetMaximumOpenFilesCount:
/// Sets both the soft and the hard limit; a failure is not reported.
QRV_EXPORT void qrvSetMaximumOpenFilesCount(std::uint64_t count);

// + qrvIsMacAppStoreVersion
/// Always false.
QRV_EXPORT bool qrvIsMacAppStoreVersion();

// + qrvIsInAppSandbox
/// The boolean "QRVAppSandbox" of the standard user defaults.
QRV_EXPORT bool qrvIsInAppSandbox();

// + qrvIsInXcode
/// Whether the environment contains "__XCODE_BUILT_PRODUCTS_DIR_PATHS", whatever its value.
QRV_EXPORT bool qrvIsInXcode();

// + qrvHardwareModel
/// "unknown" if the machine does not say.
QRV_EXPORT NSString qrvHardwareModel();

// + qrvMaxPhysicalProcessorCount
/// The number of cores; 0 if it cannot be determined.
QRV_EXPORT std::int32_t qrvMaxPhysicalProcessorCount();

// + qrvMaxProcessorFrequency
/// In hertz; 0 if it cannot be determined.
QRV_EXPORT std::int64_t qrvMaxProcessorFrequency();

// + qrvSysctlStringForKey:
/// Returns the value of a system-information name (see Platform/Foundation/Sysctl.h) up to its first zero
/// byte; nil for an unknown name and for bytes that are not UTF-8.
QRV_EXPORT NSString qrvSysctlStringForKey(const NSString& key);

// + qrvSysctlInt32ForKey:
/// Returns 0 for an unknown name and for a value that is not 4 bytes long.
QRV_EXPORT std::int32_t qrvSysctlInt32ForKey(const NSString& key);

// + qrvSysctlInt64ForKey:
/// Returns 0 for an unknown name and for a value that is not 8 bytes long.
QRV_EXPORT std::int64_t qrvSysctlInt64ForKey(const NSString& key);

// + qrvIsBSDProcessRunning:
/// Whether a process of the current user has this short name: the executable's name truncated to 16 bytes,
/// compared byte by byte. A longer name never matches. Raises NSInternalInconsistencyException if the process
/// table cannot be read.
QRV_EXPORT bool qrvIsBSDProcessRunning(const NSString& name);

// + qrvPreventPartialLaunching
/// Asks the system not to terminate the process while it waits for messages.
QRV_EXPORT void qrvPreventPartialLaunching();

} // namespace qrv
