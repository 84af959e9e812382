#include "QRVFoundation/Source/NSUserDefaults+QRV.h"

#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Logging/NSLog.h"
#include "QRVFoundation/Source/QRVFunctions.h"

namespace qrv {

namespace {

constexpr const char* unit = "QRVFoundation/Source/NSUserDefaults+QRV";

void requireKey(const NSUserDefaults& self, const NSString& key, const char* selector, unsigned long line) {
    if (key) return;
    QRVFunctions::assertionFailedForFile_line_object_selector_format(unit, line, self, selector,
                                                                     u"Precondition Failed: %s", "key");
}

/// The preferences themselves do not log; their warnings about unreadable files go to the system log.
void connectPreferencesToTheLog() {
    [[maybe_unused]] static const bool connected = [] {
        setPreferencesWarning([](const NSString& message) { NSLog(u"%@", message); });
        return true;
    }();
}

} // namespace

bool qrvBoolForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                       const NSString& domain, bool defaultValue) {
    requireKey(self, key, "qrvBoolForKey:domain:defaultValue:", __LINE__);
    connectPreferencesToTheLog();
    bool isValid = true;
    const bool value = CFPreferencesGetAppBooleanValue(key, domain, &isValid);
    return isValid ? value : defaultValue;
}

long long qrvIntegerForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                               const NSString& domain, long long defaultValue) {
    requireKey(self, key, "qrvIntegerForKey:domain:defaultValue:", __LINE__);
    connectPreferencesToTheLog();
    bool isValid = true;
    const long long value = CFPreferencesGetAppIntegerValue(key, domain, &isValid);
    return isValid ? value : defaultValue;
}

id qrvObjectForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                       const NSString& domain, const id& defaultValue) {
    requireKey(self, key, "qrvObjectForKey:domain:defaultValue:", __LINE__);
    connectPreferencesToTheLog();
    const id value = CFPreferencesCopyAppValue(key, domain);
    return value ? value : defaultValue;
}

id qrvObjectForKey_defaultValue(const NSUserDefaults& self, const NSString& key, const id& defaultValue) {
    requireKey(self, key, "qrvObjectForKey:defaultValue:", __LINE__);
    const id value = self.objectForKey(key);
    return value ? value : defaultValue;
}

NSString qrvStringForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                      const NSString& defaultValue) {
    requireKey(self, key, "qrvStringForKey:defaultValue:", __LINE__);
    const auto string = as<NSString>(self.objectForKey(key));
    return string ? string : defaultValue;
}

bool qrvBoolForKey_defaultValue(const NSUserDefaults& self, const NSString& key, bool defaultValue) {
    requireKey(self, key, "qrvBoolForKey:defaultValue:", __LINE__);
    const id value = self.objectForKey(key);
    const auto* boolean = value.payload<BooleanValue>();
    return boolean ? boolean->boolValue() : defaultValue;
}

long long qrvIntegerForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                        long long defaultValue) {
    requireKey(self, key, "qrvIntegerForKey:defaultValue:", __LINE__);
    const id value = self.objectForKey(key);
    const auto* integer = value.payload<IntegerValue>();
    return integer ? integer->integerValue() : defaultValue;
}

double qrvDoubleForKey_defaultValue(const NSUserDefaults& self, const NSString& key, double defaultValue) {
    requireKey(self, key, "qrvDoubleForKey:defaultValue:", __LINE__);
    const id value = self.objectForKey(key);
    const auto* real = value.payload<DoubleValue>();
    return real ? real->doubleValue() : defaultValue;
}

NSSize qrvSizeForKey_defaultValue(const NSUserDefaults& self, const NSString& key, NSSize defaultValue) {
    return NSSizeFromString(qrvStringForKey_defaultValue(self, key, NSStringFromSize(defaultValue)));
}

} // namespace qrv
