#pragma once

// Preferences by domain, one property list (XML or binary) per domain. A key is looked up in
// preferences/DOMAIN.plist below $XDG_CONFIG_HOME (~/.config), then below each folder of $XDG_CONFIG_DIRS
// (/etc/xdg), and then in the global domain's file, preferences/.GlobalPreferences.plist, in the same places.
// The first file that has the key decides.
//
// Files are read at the moment of use. A file that cannot be read counts as empty, with one warning. A domain
// whose name could lead to another folder has no settings. nil keys and domains have no values. Any thread.

#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

/// The domain that applications fall back to for keys that their own domain lacks.
inline constexpr char16_t NSGlobalDomain[] = u".GlobalPreferences";

/// Returns the value as it is stored, or nil.
QRV_EXPORT id CFPreferencesCopyAppValue(const NSString& key, const NSString& domain);

/// Returns true for true booleans, numbers other than zero and the texts "YES", "true" and "1", and false for
/// their counterparts (texts in any case); the flag is then set. Anything else, and a missing key, gives
/// false and clears the flag. The flag pointer may be null.
QRV_EXPORT bool CFPreferencesGetAppBooleanValue(const NSString& key, const NSString& domain,
                                                bool* keyExistsAndHasValidFormat);

/// Returns whole numbers within the signed 64-bit range, booleans, and texts that are entirely such a number
/// in decimal; the flag is then set. Anything else gives 0 and clears the flag. The flag pointer may be null.
QRV_EXPORT long long CFPreferencesGetAppIntegerValue(const NSString& key, const NSString& domain,
                                                     bool* keyExistsAndHasValidFormat);

/// Merges all files of one domain, without the global domain; nil if it has no file.
QRV_EXPORT NSDictionary preferencesOfDomain(const NSString& domain);

/// Sets the function that reports files which cannot be read; null, the default, reports nothing.
QRV_EXPORT void setPreferencesWarning(void (*warn)(const NSString& message));

} // namespace qrv
