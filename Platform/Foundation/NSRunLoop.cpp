#include "Platform/Foundation/NSRunLoop.h"

#include "Platform/Foundation/NSDate.h"

#include <algorithm>
#include <boost/asio.hpp>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <utility>

namespace qrv {

namespace asio = boost::asio;
using Descriptor = asio::posix::stream_descriptor;

/// Registrations share ownership of the context, so that one may outlive its loop. The context's queue refers
/// to registrations weakly, which avoids a reference cycle.
struct NSRunLoop::Context {
    asio::io_context io;
    asio::executor_work_guard<asio::io_context::executor_type> keepRunning{io.get_executor()};
};

struct NSRunLoop::DescriptorWatch {
    std::shared_ptr<Context> context;
    Descriptor descriptor;
    Descriptor::wait_type condition;
    Handler handler;

    static void arm(const std::shared_ptr<DescriptorWatch>& watch) {
        watch->descriptor.async_wait(
            watch->condition, [weak = std::weak_ptr(watch)](const boost::system::error_code&) {
                auto alive = weak.lock();
                if (!alive) return;
                arm(alive); // first, so that a loop run by the handler sees the descriptor too
                alive->handler();
            });
    }
};

struct NSRunLoop::OneShotTimer {
    std::shared_ptr<Context> context;
    asio::steady_timer timer;
    Handler handler;
};

namespace {

thread_local NSRunLoop* substitute = nullptr;

/// Duplicates the descriptor, so that one file can be watched for reading and writing at once.
int duplicate(int descriptor) {
    int copy = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) throw std::system_error(errno, std::generic_category(), "watching a descriptor");
    return copy;
}

} // namespace

NSRunLoop& NSRunLoop::currentRunLoop() {
    if (substitute) return *substitute;
    thread_local NSRunLoop loop;
    return loop;
}

void NSRunLoop::setCurrentRunLoopForTesting(NSRunLoop* loop) {
    substitute = loop;
}

NSRunLoop::NSRunLoop() : context_(std::make_shared<Context>()) {}

NSRunLoop::~NSRunLoop() = default;

void NSRunLoop::runUntilDate(const NSDate& date) {
    runReadyOnce();
    constexpr double longestWait = 1e8; // about three years, for dates in the distant future
    double left = date.timeIntervalSinceReferenceDate() - NSDate::date().timeIntervalSinceReferenceDate();
    if (left <= 0) return;
    auto wait = std::chrono::duration<double>(std::min(left, longestWait));
    context_->io.run_for(std::chrono::ceil<std::chrono::microseconds>(wait));
}

bool NSRunLoop::runUntil(const std::function<bool()>& predicate, TimePoint deadline) {
    while (!predicate()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            runReadyOnce();
            return predicate();
        }
        context_->io.run_one_until(deadline);
    }
    return true;
}

/// Sends a marker through the queue twice: the first pass reaches the point where descriptors and timers are
/// polled, the second runs what was found there. What handlers post meanwhile waits for the next run.
void NSRunLoop::runReadyOnce() {
    for (int trip = 0; trip < 2; ++trip) {
        auto passed = std::make_shared<bool>(false);
        asio::post(context_->io, [passed] { *passed = true; });
        while (!*passed && context_->io.poll_one() > 0) {
        }
    }
}

NSRunLoop::Watch NSRunLoop::watchReadable(int descriptor, Handler handler) {
    return watch(descriptor, Descriptor::wait_read, std::move(handler));
}

NSRunLoop::Watch NSRunLoop::watchWritable(int descriptor, Handler handler) {
    return watch(descriptor, Descriptor::wait_write, std::move(handler));
}

NSRunLoop::Watch NSRunLoop::watch(int descriptor, int condition, Handler handler) {
    auto state = std::make_shared<DescriptorWatch>(
        DescriptorWatch{context_, Descriptor(context_->io, duplicate(descriptor)),
                        static_cast<Descriptor::wait_type>(condition), std::move(handler)});
    DescriptorWatch::arm(state);
    return Watch(std::move(state));
}

NSRunLoop::Timer NSRunLoop::scheduleTimer(std::chrono::nanoseconds delay, Handler handler) {
    auto state = std::make_shared<OneShotTimer>(
        OneShotTimer{context_, asio::steady_timer(context_->io, delay), std::move(handler)});
    state->timer.async_wait([weak = std::weak_ptr(state)](const boost::system::error_code&) {
        if (auto alive = weak.lock()) alive->handler();
    });
    return Timer(std::move(state));
}

NSRunLoop::Posted NSRunLoop::performSoon(Handler handler) {
    auto state = std::make_shared<Handler>(std::move(handler));
    asio::post(context_->io, [weak = std::weak_ptr(state)] {
        if (const auto alive = weak.lock()) std::exchange(*alive, nullptr)(); // gone when it has run
    });
    return Posted(std::move(state));
}

} // namespace qrv
