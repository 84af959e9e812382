#include "Platform/Foundation/NSThread.h"

#include <array>
#include <cstdint>
#include <pthread.h>
#include <unistd.h>

namespace qrv {

NSThread NSThread::currentThread() {
    const pthread_t thread = pthread_self();
    std::array<char, 16> name{};
    pthread_getname_np(thread, name.data(), name.size());
    static_assert(sizeof(thread) == sizeof(std::uintptr_t));
    return {NSString::fromUTF8(name.data()), reinterpret_cast<const void*>(thread)};
}

bool NSThread::isMainThread() {
    return gettid() == getpid();
}

} // namespace qrv
