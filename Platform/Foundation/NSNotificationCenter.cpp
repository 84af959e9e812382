#include "Platform/Foundation/NSNotificationCenter.h"

#include <algorithm>
#include <vector>

namespace qrv {

struct NSNotificationCenter::Observation {
    const void* observer;
    NSString name;
    const void* object;
    Handler handler;
    bool ended = false;
};

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
    static NSNotificationCenter instance;
    return instance;
}

void NSNotificationCenter::addObserver_selector_name_object(const void* observer, Handler handler,
                                                            const NSString& name, const void* object) {
    auto observation = std::make_shared<Observation>(Observation{observer, name, object, std::move(handler)});
    const std::lock_guard lock(mutex_);
    observations_.push_back(std::move(observation));
}

void NSNotificationCenter::removeObserver(const void* observer) {
    const std::lock_guard lock(mutex_);
    std::erase_if(observations_, [&](const auto& observation) {
        if (observation->observer != observer) return false;
        observation->ended = true;
        return true;
    });
}

void NSNotificationCenter::postNotificationName_object(const NSString& name, const void* object) {
    std::vector<std::shared_ptr<Observation>> addressed;
    {
        const std::lock_guard lock(mutex_);
        std::copy_if(observations_.begin(), observations_.end(), std::back_inserter(addressed),
                     [&](const auto& o) { return o->name == name && (!o->object || o->object == object); });
    }
    for (const auto& observation : addressed) {
        {
            const std::lock_guard lock(mutex_);
            if (observation->ended) continue;
        }
        observation->handler(NSNotification{name, object});
    }
}

} // namespace qrv
