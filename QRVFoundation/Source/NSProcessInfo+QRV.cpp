#include "QRVFoundation/Source/NSProcessInfo+QRV.h"

#include "Platform/Foundation/Gestalt.h"
#include "Platform/Foundation/NSAssertionHandler.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Foundation/ProcessTable.h"
#include "Platform/Foundation/Sysctl.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <sys/resource.h>
#include <unistd.h>

namespace qrv {

namespace {

using ProcessNames = std::optional<std::vector<std::string>>;

bool isFoundationAbove(double threshold) {
    return std::floor(NSFoundationVersionNumber()) > threshold;
}

/// Returns an integer of exactly this width, or 0.
template <class Integer>
Integer systemInteger(const NSString& key) {
    const std::optional<std::string> bytes = sysctlByName(key.utf8());
    Integer value = 0;
    if (bytes && bytes->size() == sizeof value) std::memcpy(&value, bytes->data(), sizeof value);
    return value;
}

void require(bool condition, const char16_t* text, const char16_t* function, long long line) {
    if (condition) return;
    NSAssertionHandler::currentHandler().handleFailureInFunction_file_lineNumber_description(
        function, u"QRVFoundation/Source/NSProcessInfo+QRV", line, u"Invalid parameter not satisfying: %@",
        NSString(text));
}

int getProcessList(ProcessNames& list) {
    constexpr const char16_t* function = u"int GetBSDProcessList(kinfo_proc **, size_t *)";
    require(!list, u"result == NULL", function, __LINE__);
    const int err = readProcessTable(getuid(), list);
    require((err == 0) == list.has_value(), u"(err == 0) == (*procList != NULL)", function, __LINE__);
    return err;
}

} // namespace

bool qrvIsMacOSAtLeast10_8() {
    return isFoundationAbove(833.1);
}

bool qrvIsMacOSAtLeast10_9() {
    return isFoundationAbove(945.0);
}

bool qrvIsMacOSAtLeast10_10() {
    return isFoundationAbove(1056.0);
}

bool qrvIsMacOSAtLeast10_11() {
    return qrvIsOperatingSystemAtLeastVersion({10, 11, 0});
}

bool qrvIsMacOSAtLeast10_12() {
    return qrvIsOperatingSystemAtLeastVersion({10, 12, 0});
}

bool qrvIsMacOSAtLeast10_12_2() {
    return qrvIsOperatingSystemAtLeastVersion({10, 12, 2});
}

bool qrvIsMacOSAtLeast10_13() {
    return qrvIsOperatingSystemAtLeastVersion({10, 13, 0});
}

bool qrvIsMacOSAtLeast10_13_2() {
    return qrvIsOperatingSystemAtLeastVersion({10, 13, 2});
}

bool qrvIsMacOSAtLeast10_14() {
    return qrvIsOperatingSystemAtLeastVersion({10, 14, 0});
}

bool qrvIsMacOSAtLeast10_15() {
    return qrvIsOperatingSystemAtLeastVersion({10, 15, 0});
}

bool qrvIsMacOSAtLeast10_15_4() {
    return qrvIsOperatingSystemAtLeastVersion({10, 15, 4});
}

bool qrvIsMacOSAtLeast10_15DeveloperBeta5() {
    return NSFoundationVersionNumber() >= 1665.1;
}

bool qrvIsOperatingSystemAtLeastVersion(NSOperatingSystemVersion version) {
    return qrvIsMacOSAtLeast10_10() && NSProcessInfo::processInfo().isOperatingSystemAtLeastVersion(version);
}

bool qrvGetOperatingSystemVersion_fromString_error(NSOperatingSystemVersion* version, const NSString& string,
                                                   NSError* error) {
    const NSArray pieces = string.componentsSeparatedByString(u".");
    if (!version || pieces.count() < 2 || pieces.count() > 3) {
        const NSString description = NSString::stringWithFormat(u"Error parsing OS version: %@", string);
        setError(error, NSError::errorWithDomain_code_userInfo(
                            NSOSStatusErrorDomain, -50,
                            NSDictionary{{NSString(NSLocalizedDescriptionKey), description}}));
        return false;
    }
    const auto piece = [&](std::size_t i) { return as<NSString>(pieces.objectAtIndex(i)).integerValue(); };
    *version = {piece(0), piece(1), pieces.count() == 3 ? piece(2) : 0};
    return true;
}

NSString qrvOSVersionString() {
    std::int32_t majorVersion = 0;
    std::int32_t minorVersion = 0;
    std::int32_t bugFixVersion = 0;
    Gestalt(gestaltSystemVersionMajor, &majorVersion);
    Gestalt(gestaltSystemVersionMinor, &minorVersion);
    Gestalt(gestaltSystemVersionBugFix, &bugFixVersion);
    return NSString::stringWithFormat(u"%d.%d.%d", majorVersion, minorVersion, bugFixVersion);
}

std::uint64_t qrvMaximumOpenFilesCount() {
    rlimit limit = {};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 0;
}

void qrvSetMaximumOpenFilesCount(std::uint64_t count) {
    const rlimit limit = {count, count};
    setrlimit(RLIMIT_NOFILE, &limit);
}

bool qrvIsMacAppStoreVersion() {
    return false;
}

bool qrvIsInAppSandbox() {
    return NSUserDefaults::standardUserDefaults().boolForKey(u"QRVAppSandbox");
}

bool qrvIsInXcode() {
    const NSDictionary environment = NSProcessInfo::processInfo().environment();
    return !environment.objectForKey(NSString(u"__XCODE_BUILT_PRODUCTS_DIR_PATHS")).isNil();
}

NSString qrvHardwareModel() {
    const NSString model = qrvSysctlStringForKey(u"hw.model");
    return model ? model : NSString(u"unknown");
}

std::int32_t qrvMaxPhysicalProcessorCount() {
    return qrvSysctlInt32ForKey(u"hw.physicalcpu_max");
}

std::int64_t qrvMaxProcessorFrequency() {
    return qrvSysctlInt64ForKey(u"hw.cpufrequency_max");
}

NSString qrvSysctlStringForKey(const NSString& key) {
    const std::optional<std::string> bytes = sysctlByName(key.utf8());
    return bytes && !bytes->empty() ? NSString::stringWithUTF8String(bytes->c_str()) : NSString();
}

std::int32_t qrvSysctlInt32ForKey(const NSString& key) {
    return systemInteger<std::int32_t>(key);
}

std::int64_t qrvSysctlInt64ForKey(const NSString& key) {
    return systemInteger<std::int64_t>(key);
}

bool qrvIsBSDProcessRunning(const NSString& name) {
    ProcessNames names;
    const int err = getProcessList(names);
    require(err == 0, u"err == 0", u"+[NSProcessInfo(QRV) qrvIsBSDProcessRunning:]", __LINE__);
    return std::find(names->begin(), names->end(), name.utf8()) != names->end();
}

void qrvPreventPartialLaunching() {
    NSProcessInfo& info = NSProcessInfo::processInfo();
    info.setAutomaticTerminationSupportEnabled(true);
    info.disableAutomaticTermination(u"need to receive IPC");
}

} // namespace qrv
