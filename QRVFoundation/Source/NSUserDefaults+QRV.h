#pragma once

// Settings one at a time, always of the type asked for: where a key is missing, or what is stored cannot
// serve as that type, the caller's default comes back. Nothing is written, kept or registered, and nothing
// but a nil key fails: that is a programming error, which raises a QRVAssertionFailedException. Any thread.

#include "Platform/Foundation/NSRange.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace qrv {

// From another application's domain, and then the global one (see Platform/Foundation/CFPreferences.h). The
// receiver and its search list do not matter.

// - qrvBoolForKey:domain:defaultValue:
/// The default also where the value does not read as a boolean.
bool qrvBoolForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                       const NSString& domain, bool defaultValue);
// - qrvIntegerForKey:domain:defaultValue:
/// The default also where the value does not read as an integer.
long long qrvIntegerForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                               const NSString& domain, long long defaultValue);
// - qrvObjectForKey:domain:defaultValue:
/// Of whatever class; the default may be nil.
id qrvObjectForKey_domain_defaultValue(const NSUserDefaults& self, const NSString& key,
                                       const NSString& domain, const id& defaultValue);

// From the receiver's search list.

// - qrvObjectForKey:defaultValue:
/// Of whatever class; the default may be nil.
id qrvObjectForKey_defaultValue(const NSUserDefaults& self, const NSString& key, const id& defaultValue);
// - qrvStringForKey:defaultValue:
/// The default also for anything that is no string; a number is not turned into text.
NSString qrvStringForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                      const NSString& defaultValue);
// - qrvBoolForKey:defaultValue:
/// What the value itself answers as a boolean: numbers do, and strings by their beginning.
bool qrvBoolForKey_defaultValue(const NSUserDefaults& self, const NSString& key, bool defaultValue);
// - qrvIntegerForKey:defaultValue:
/// What the value itself answers as an integer; a string without a number at its beginning answers 0.
long long qrvIntegerForKey_defaultValue(const NSUserDefaults& self, const NSString& key,
                                        long long defaultValue);
// - qrvDoubleForKey:defaultValue:
/// What the value itself answers as a real; a string without a number at its beginning answers 0.
double qrvDoubleForKey_defaultValue(const NSUserDefaults& self, const NSString& key, double defaultValue);
// - qrvSizeForKey:defaultValue:
/// A string such as "{612, 792}", width first; one without a number is a zero size. The default comes back
/// as its own text form reads.
NSSize qrvSizeForKey_defaultValue(const NSUserDefaults& self, const NSString& key, NSSize defaultValue);

} // namespace qrv
