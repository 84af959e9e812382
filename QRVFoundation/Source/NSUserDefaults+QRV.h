#pragma once

// Reads single settings with a type and a default, which is returned if the key is missing or its value does
// not have that type. Nothing is written, cached or registered. The only failure is a nil key: a programming
// error, which raises a QRVAssertionFailedException. Any thread.

#include "Platform/Foundation/NSRange.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace qrv {

// Settings of another application's domain, and then of the global one (see
// Platform/Foundation/CFPreferences.h). The receiver and its search list do not matter.

// - qrvBoolForKey:domain:defaultValue:
/// Also returns the default if the value does not read as a boolean.
QRV_EXPORT bool qrvBoolForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                                  const NSString& domain, bool defaultValue);
// - qrvIntegerForKey:domain:defaultValue:
/// Also returns the default if the value does not read as an integer.
QRV_EXPORT long long qrvIntegerForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                                          const NSString& domain, long long defaultValue);
// - qrvObjectForKey:domain:defaultValue:
/// The value may be of any class, and the default may be nil.
QRV_EXPORT id qrvObjectForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                                  const NSString& domain, const id& defaultValue);

// Settings of the receiver's search list.

// - qrvObjectForKey:defaultValue:
/// The value may be of any class, and the default may be nil.
QRV_EXPORT id qrvObjectForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                           const id& defaultValue);
// - qrvStringForKey:defaultValue:
/// Also returns the default for anything but a string; numbers are not converted.
QRV_EXPORT NSString qrvStringForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                                 const NSString& defaultValue);
// - qrvBoolForKey:defaultValue:
/// Returns the value's own boolValue, which numbers have, and strings by their beginning.
QRV_EXPORT bool qrvBoolForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                           bool defaultValue);
// - qrvIntegerForKey:defaultValue:
/// Returns the value's own integerValue; 0 for a string that does not begin with a number.
QRV_EXPORT long long qrvIntegerForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                                   long long defaultValue);
// - qrvDoubleForKey:defaultValue:
/// Returns the value's own doubleValue; 0 for a string that does not begin with a number.
QRV_EXPORT double qrvDoubleForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                               double defaultValue);
// - qrvSizeForKey:defaultValue:
/// Reads a string such as "{612, 792}", width first; one without a number gives a zero size. The default
/// takes the same way through its text form.
QRV_EXPORT NSSize qrvSizeForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                             NSSize defaultValue);

} // namespace qrv
