#pragma once

// Notifications by name, from senders to observers.
//
//     NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
//     const auto handler = [this](const NSNotification& notification) { ... };
//     center.addObserver_selector_name_object(this, handler, u"Finished", view);
//     center.removeObserver(this); // in the destructor

#include "Platform/Foundation/NSString.h"

#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace qrv {

struct QRV_EXPORT NSNotification {
    NSString name;
    /// The sender, to compare with; null if none was given.
    const void* object = nullptr;
};

class QRV_EXPORT NSNotificationCenter {
public:
    using Handler = std::function<void(const NSNotification&)>;

    NSNotificationCenter() = default;
    NSNotificationCenter(const NSNotificationCenter&) = delete;
    NSNotificationCenter& operator=(const NSNotificationCenter&) = delete;

    // + defaultCenter
    /// The process's center. Every operation may be called from any thread.
    static NSNotificationCenter& defaultCenter();

    // - addObserver:selector:name:object:
    /// Calls the handler for each notification of this name from `object`, or from any sender if `object` is
    /// null. The observer only identifies the observation; it is not kept alive.
    void addObserver_selector_name_object(const void* observer, Handler handler, const NSString& name,
                                          const void* object);
    // - removeObserver:
    /// Ends every observation of this observer at once; even a notification that is being posted no longer
    /// reaches it.
    void removeObserver(const void* observer);
    // - postNotificationName:object:
    /// Calls the handlers on this thread, in the order in which they were added. Handlers added meanwhile get
    /// the next notification.
    void postNotificationName_object(const NSString& name, const void* object);

private:
    struct Observation;

    std::mutex mutex_; // guards observations_ and their `ended`; never held while a handler runs
    std::list<std::shared_ptr<Observation>> observations_;
};

} // namespace qrv
