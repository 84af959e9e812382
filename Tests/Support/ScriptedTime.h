#pragma once

// Time at a test's command: a clock, and a run loop that does not wait but plays the next step of a script
// and sets the clock to a little after the end of the slice.

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSRunLoop.h"

#include <deque>
#include <functional>
#include <stdexcept>

namespace qrv {

class ScriptedTime final : public NSRunLoop {
public:
    ScriptedTime() {
        now = start;
        NSDate::setClockForTesting([] { return now; });
        setCurrentRunLoopForTesting(this);
    }

    ~ScriptedTime() override {
        setCurrentRunLoopForTesting(nullptr);
        NSDate::setClockForTesting(nullptr);
    }

    /// What happens in the next slice that has no step yet.
    void inNextSlice(std::function<void()> step) { steps_.push_back(std::move(step)); }

    void runUntilDate(const NSDate& date) override {
        if (++slices > 1000) throw std::runtime_error("the wait does not end");
        end_ = date.timeIntervalSinceReferenceDate();
        sliceLength = end_ - now;
        if (!steps_.empty()) {
            const auto step = std::move(steps_.front());
            steps_.pop_front();
            step();
        }
        now = end_ + late;
    }

    /// The time after the slice that is under way.
    NSDate endOfSlice() const { return NSDate::dateWithTimeIntervalSinceReferenceDate(end_ + late); }

    static constexpr double start = 1000;
    inline static double now = start;
    int slices = 0;
    double sliceLength = 0;

private:
    static constexpr double late = 0.001;

    double end_ = start;
    std::deque<std::function<void()>> steps_;
};

} // namespace qrv
