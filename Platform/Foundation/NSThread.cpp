#include "Platform/Foundation/NSThread.h"

#include <array>
#include <pthread.h>
#include <unistd.h>

namespace qrv {

namespace {

/// Its address identifies the thread.
thread_local const char mark = 0;

} // namespace

NSThread NSThread::currentThread() {
    std::array<char, 16> name{};
    pthread_getname_np(pthread_self(), name.data(), name.size());
    return {NSString::fromUTF8(name.data()), &mark};
}

bool NSThread::isMainThread() {
    return gettid() == getpid();
}

} // namespace qrv
