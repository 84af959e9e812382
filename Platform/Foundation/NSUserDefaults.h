#pragma once

// The process's settings, by search list: the argument domain (if the process says that it has one), the
// domain named after the process, the global domain, and the registered defaults. The persistent domains are
// files (see CFPreferences.h), which are read at the moment of use and never written.

#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

class QRV_EXPORT NSUserDefaults : public Handle<NSUserDefaults> {
public:
    using Handle::Handle;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + standardUserDefaults
    /// The process's only object. Every operation may be called from any thread.
    static NSUserDefaults standardUserDefaults();

    // - objectForKey:
    /// Returns the first value in the search list, or nil.
    id objectForKey(const NSString& key) const;
    // - boolForKey:
    /// Returns the value as a boolean (see BooleanValue); false if it is missing or has no boolean value.
    bool boolForKey(const NSString& key) const;
    // - dictionaryRepresentation
    /// Merges the search list, with the values that objectForKey finds.
    NSDictionary dictionaryRepresentation() const;
    // - persistentDomainForName:
    /// Returns one domain's settings, or nil if there is no such domain.
    NSDictionary persistentDomainForName(const NSString& name) const;
    // - registerDefaults:
    /// Adds to the registered defaults, replacing values of the same keys.
    void registerDefaults(const NSDictionary& defaults) const;

    /// Says whether the command line (NSProcessInfo::setArguments) consists of "-Key value" pairs, which then
    /// come first in the search list. Off by default.
    void setReadsArgumentDomain(bool reads) const;

    /// Forgets the registered defaults and turns the argument domain off.
    void resetForTesting() const;
};

} // namespace qrv
