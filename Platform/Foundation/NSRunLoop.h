#pragma once

// The event loop of a thread: file descriptors, timers and posted functions.
//
// Handlers run inside the run operations only, on the loop's thread, one after the other. A handler may run
// the loop again; a handler that throws ends the innermost run operation with its exception and leaves the
// loop usable. Everything belongs to the loop's thread.

#include <chrono>
#include <functional>
#include <memory>

namespace qrv {

class NSDate;

class NSRunLoop {
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

    /// The loop of the calling thread, made on first use; it dies with the thread.
    // + currentRunLoop
    static NSRunLoop& currentRunLoop();

    /// Puts another loop in the place of the calling thread's own; nullptr takes it away again. Not owned.
    static void setCurrentRunLoopForTesting(NSRunLoop* loop);

    NSRunLoop();
    virtual ~NSRunLoop();
    NSRunLoop(const NSRunLoop&) = delete;
    NSRunLoop& operator=(const NSRunLoop&) = delete;

    /// Processes events until the date. With a nil date or one in the past: what is ready now, once, without
    /// blocking.
    // - runUntilDate:
    virtual void runUntilDate(const NSDate& date);

    /// Processes events until the predicate holds or the deadline passes, and tells whether it holds. The
    /// predicate is asked first, and then after each event.
    virtual bool runUntil(const std::function<bool()>& predicate, TimePoint deadline);

    /// Calls the handler whenever the descriptor can be read (or written) without blocking, its end included.
    /// The descriptor stays the caller's and should be non-blocking; closing it does not end the watch.
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
