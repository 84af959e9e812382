#pragma once

// The settings of this process, by search list: the argument domain (where the process says that it has one),
// the process's own domain (the process name's), the global domain, and what was registered. The persistent
// domains are files, see CFPreferences.h; they are read at the moment of use and never written.

#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

class NSUserDefaults : public id {
public:
    using id::id;
    static const ClassInfo& classInfo();

    // + standardUserDefaults
    /// The one object of the process; every operation may be called from any thread.
    static NSUserDefaults standardUserDefaults();

    // - objectForKey:
    /// The first value of the search list, or nil.
    id objectForKey(const NSString& key) const;
    // - boolForKey:
    /// What the value answers as a boolean (see BooleanValue); false when it does not, or is missing.
    bool boolForKey(const NSString& key) const;
    // - dictionaryRepresentation
    /// The whole search list, as objectForKey finds it.
    NSDictionary dictionaryRepresentation() const;
    // - persistentDomainForName:
    /// All of one domain, or nil when there is none of the name.
    NSDictionary persistentDomainForName(const NSString& name) const;
    // - registerDefaults:
    /// Adds to the last domain of the search list, replacing values of the same keys.
    void registerDefaults(const NSDictionary& defaults) const;

    /// Whether the command line consists of "-Key value" pairs, which then come first. It does not, until
    /// said.
    void setReadsArgumentDomain(bool reads) const;

    /// Forgets what was registered and that there are arguments to read.
    void resetForTesting() const;
};

} // namespace qrv
