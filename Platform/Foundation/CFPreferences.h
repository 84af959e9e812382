#pragma once

// Settings by domain, one property list (XML or binary) per domain: preferences/DOMAIN.plist below
// $XDG_CONFIG_HOME (~/.config), then below each of $XDG_CONFIG_DIRS (/etc/xdg); after the domain, the global
// domain, preferences/.GlobalPreferences.plist, in the same places. The first file that has the key decides.
//
// Files are read at the moment of use. One that cannot be read counts as empty and is warned of once. A
// domain whose name could lead to another folder has no settings. nil keys and domains have no values. Any
// thread.

#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

/// The domain whose settings hold for every application that has none of its own.
inline constexpr char16_t NSGlobalDomain[] = u".GlobalPreferences";

// CFPreferencesCopyAppValue
/// The value as it is stored, or nil.
id CFPreferencesCopyAppValue(const NSString& key, const NSString& domain);

// CFPreferencesGetAppBooleanValue
/// True, and the flag set, for true booleans, numbers other than zero and the texts "YES", "true" and "1";
/// false, and the flag set, for their counterparts, "NO", "false" and "0" (in any case of letters). For
/// anything else and for a missing key false, and the flag cleared. The flag may be absent.
bool CFPreferencesGetAppBooleanValue(const NSString& key, const NSString& domain,
                                     bool* keyExistsAndHasValidFormat);

// CFPreferencesGetAppIntegerValue
/// The value, and the flag set, for whole numbers within the signed 64-bit range, booleans, and texts that
/// are such a number in decimal from end to end; else 0, and the flag cleared. The flag may be absent.
long long CFPreferencesGetAppIntegerValue(const NSString& key, const NSString& domain,
                                          bool* keyExistsAndHasValidFormat);

/// What one domain holds in all its places together, without the global domain; nil when it has no file.
NSDictionary preferencesOfDomain(const NSString& domain);

/// Who is told of files that cannot be read; null, as at the start, for nobody.
void setPreferencesWarning(void (*warn)(const NSString& message));

} // namespace qrv
