#include "Platform/Foundation/NSUserDefaults.h"

#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Foundation/NSProcessInfo.h"

#include <mutex>
#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo userDefaultsClassInfo{"NSUserDefaults", &Object::classInfo};

NSDictionary readArguments() {
    const NSArray arguments = NSProcessInfo::processInfo().arguments();
    NSMutableDictionary pairs;
    for (std::size_t i = 1; i + 1 < arguments.count(); ++i) {
        const auto name = as<NSString>(arguments.objectAtIndex(i));
        if (!name.hasPrefix(u"-") || name.length() == 1) continue;
        ++i;
        pairs.setObject_forKey(arguments.objectAtIndex(i), name.substringFromIndex(1));
    }
    return std::move(pairs).copy();
}

/// The only mutable payload: the handles share it, and the lock guards it.
class UserDefaultsObject final : public Object {
public:
    const ClassInfo& objectClass() const override { return userDefaultsClassInfo; }

    NSDictionary argumentDomain() const {
        const std::lock_guard lock(mutex_);
        return readsArguments_ ? readArguments() : NSDictionary();
    }

    void setReadsArguments(bool reads) const {
        const std::lock_guard lock(mutex_);
        readsArguments_ = reads;
    }

    NSDictionary registrationDomain() const {
        const std::lock_guard lock(mutex_);
        return registered_.copy();
    }

    id registeredObject(const NSString& key) const {
        const std::lock_guard lock(mutex_);
        return registered_.objectForKey(key);
    }

    void addDefaults(const NSDictionary& defaults) const {
        const std::lock_guard lock(mutex_);
        registered_.addEntriesFromDictionary(defaults);
    }

    void reset() const {
        const std::lock_guard lock(mutex_);
        readsArguments_ = false;
        registered_ = NSMutableDictionary();
    }

private:
    mutable std::mutex mutex_;
    mutable bool readsArguments_ = false;
    mutable NSMutableDictionary registered_;
};

const UserDefaultsObject& object(const NSUserDefaults& defaults) {
    return static_cast<const UserDefaultsObject&>(*defaults.shared());
}

NSString ownDomain() {
    return NSProcessInfo::processInfo().processName();
}

} // namespace

const ClassInfo& NSUserDefaults::classInfo() {
    return userDefaultsClassInfo;
}

bool NSUserDefaults::accepts(const Object& payload) {
    return typeid(payload) == typeid(UserDefaultsObject);
}

NSUserDefaults NSUserDefaults::standardUserDefaults() {
    // Never destroyed: settings are read until the very end of the process.
    static const NSUserDefaults& instance = *new NSUserDefaults(std::make_shared<UserDefaultsObject>());
    return instance;
}

id NSUserDefaults::objectForKey(const NSString& key) const {
    if (isNil() || !key) return {};
    if (id value = object(*this).argumentDomain().objectForKey(key)) return value;
    // Looks in the process's own domain, and then in the global one.
    if (id value = CFPreferencesCopyAppValue(key, ownDomain())) return value;
    return object(*this).registeredObject(key);
}

bool NSUserDefaults::boolForKey(const NSString& key) const {
    const id value = objectForKey(key);
    const auto* boolean = value.payload<BooleanValue>();
    return boolean && boolean->boolValue();
}

NSDictionary NSUserDefaults::dictionaryRepresentation() const {
    if (isNil()) return {};
    NSMutableDictionary all;
    all.addEntriesFromDictionary(object(*this).registrationDomain());
    all.addEntriesFromDictionary(preferencesOfDomain(NSGlobalDomain));
    all.addEntriesFromDictionary(preferencesOfDomain(ownDomain()));
    all.addEntriesFromDictionary(object(*this).argumentDomain());
    return std::move(all).copy();
}

NSDictionary NSUserDefaults::persistentDomainForName(const NSString& name) const {
    return preferencesOfDomain(name);
}

void NSUserDefaults::registerDefaults(const NSDictionary& defaults) const {
    if (*this) object(*this).addDefaults(defaults);
}

void NSUserDefaults::setReadsArgumentDomain(bool reads) const {
    if (*this) object(*this).setReadsArguments(reads);
}

void NSUserDefaults::resetForTesting() const {
    if (*this) object(*this).reset();
}

} // namespace qrv
