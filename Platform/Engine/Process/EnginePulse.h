#pragma once

// Tells an engine that is busy from one that hangs: its browser process answers while a page is at work.
//
//     EnginePulse pulse(client, loop, [] { ... }); // called once, when the engine has stopped to answer

#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Foundation/NSRunLoop.h"

#include <chrono>
#include <functional>
#include <memory>

namespace qrv::engine {

class EnginePulse {
public:
    struct Limits {
        /// Of questions, each asked only once the last one was answered.
        std::chrono::milliseconds interval{1000};
        /// How many intervals an answer may take. Counted in turns of the loop, so that time in which this
        /// process itself did not run is not held against the engine.
        int patience = 30;
    };

    /// The client and the loop must outlive it. The handler may destroy it.
    EnginePulse(DevToolsClient& devTools, NSRunLoop& loop, std::function<void()> stopped);
    EnginePulse(DevToolsClient& devTools, NSRunLoop& loop, std::function<void()> stopped, Limits limits);
    EnginePulse(const EnginePulse&) = delete;
    EnginePulse& operator=(const EnginePulse&) = delete;

private:
    void schedule();
    void beat();

    DevToolsClient& devTools_;
    NSRunLoop& loop_;
    std::function<void()> stopped_;
    Limits limits_;
    std::shared_ptr<bool> answered_; // whether the last question was; shared with its callback
    int waited_ = 0;                 // intervals since that question
    NSRunLoop::Timer timer_;
};

} // namespace qrv::engine
