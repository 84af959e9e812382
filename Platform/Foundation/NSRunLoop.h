#pragma once

// The event loop of a thread: file descriptors, timers and posted functions.
//
// Handlers run only inside the run operations, on the loop's thread, one after the other. A handler may run
// the loop itself; a handler that throws ends the innermost run operation with its exception and leaves the
// loop usable. Everything belongs to the loop's thread.

#include "Platform/Foundation/Export.h"

#include <chrono>
#include <functional>
#include <memory>

namespace qrv {

class NSDate;

class QRV_EXPORT NSRunLoop {
public:
    using Handler = std::function<void()>;
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Keeps a watch, a timer or a posted function alive; its handler never runs after cancel or destruction.
    /// An owner that holds its registrations may be destroyed by any handler, theirs included.
    class Registration {
    public:
        Registration() = default;

        void cancel() { state_.reset(); }

    private:
        friend class NSRunLoop;

        explicit Registration(std::shared_ptr<void> state) : state_(std::move(state)) {}

        std::shared_ptr<void> state_;
    };

    using Timer = Registration;
    using Watch = Registration;
    using Posted = Registration;

    /// The calling thread's loop, created on first use and destroyed with the thread.
    // + currentRunLoop
    static NSRunLoop& currentRunLoop();

    /// Replaces the calling thread's loop; null restores it. Not owned.
    static void setCurrentRunLoopForTesting(NSRunLoop* loop);

    NSRunLoop();
    virtual ~NSRunLoop();
    NSRunLoop(const NSRunLoop&) = delete;
    NSRunLoop& operator=(const NSRunLoop&) = delete;

    /// Processes events until the date. With a nil or past date, processes once what is ready, without
    /// blocking.
    // - runUntilDate:
    virtual void runUntilDate(const NSDate& date);

    /// Processes events until the predicate holds or the deadline has passed, and returns whether it holds.
    /// The predicate is checked first and after each event.
    virtual bool runUntil(const std::function<bool()>& predicate, TimePoint deadline);

    /// Calls the handler whenever the descriptor is ready to read (or write), at its end too. The descriptor
    /// remains the caller's and should be non-blocking; closing it does not end the watch.
    [[nodiscard]] Watch watchReadable(int descriptor, Handler handler);
    [[nodiscard]] Watch watchWritable(int descriptor, Handler handler);

    /// Calls the handler once, after the delay.
    [[nodiscard]] Timer scheduleTimer(std::chrono::nanoseconds delay, Handler handler);

    /// Calls the handler once, in a turn of its own after what was posted before.
    [[nodiscard]] Posted performSoon(Handler handler);

private:
    struct Context;
    struct DescriptorWatch;
    struct OneShotTimer;

    Watch watch(int descriptor, int condition, Handler handler);
    void runReadyOnce();

    std::shared_ptr<Context> context_;
};

} // namespace qrv
