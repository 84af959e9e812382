#pragma once

// The calling thread, as log lines name it.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class NSThread {
public:
    // + currentThread
    static NSThread currentThread();
    // + isMainThread
    /// Whether the calling thread is the one that the process started with.
    static bool isMainThread();

    // - name
    /// The system's name for the thread (at most 15 bytes): what it was given, else the process's.
    const NSString& name() const { return name_; }

    /// Different for each thread that lives at the same time.
    const void* address() const { return address_; }

private:
    NSThread(NSString name, const void* address) : name_(std::move(name)), address_(address) {}

    NSString name_;
    const void* address_;
};

} // namespace qrv
