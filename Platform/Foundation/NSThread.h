#pragma once

// The calling thread, as log lines identify it.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class QRV_EXPORT NSThread {
public:
    // + currentThread
    static NSThread currentThread();
    // + isMainThread
    /// Whether the calling thread is the one that the process started with.
    static bool isMainThread();

    // - name
    /// The thread's name in the system (at most 15 bytes): the one it was given, or else the process's.
    const NSString& name() const { return name_; }

    /// Unique among the threads that exist at the same time.
    const void* address() const { return address_; }

private:
    NSThread(NSString name, const void* address) : name_(std::move(name)), address_(address) {}

    NSString name_;
    const void* address_;
};

} // namespace qrv
