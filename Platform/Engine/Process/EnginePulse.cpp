#include "Platform/Engine/Process/EnginePulse.h"

#include <utility>

namespace qrv::engine {

EnginePulse::EnginePulse(DevToolsClient& devTools, NSRunLoop& loop, std::function<void()> stopped)
    : EnginePulse(devTools, loop, std::move(stopped), Limits()) {}

EnginePulse::EnginePulse(DevToolsClient& devTools, NSRunLoop& loop, std::function<void()> stopped,
                         Limits limits)
    : devTools_(devTools), loop_(loop), stopped_(std::move(stopped)), limits_(limits),
      answered_(std::make_shared<bool>(true)) {
    schedule();
}

void EnginePulse::schedule() {
    timer_ = loop_.scheduleTimer(limits_.interval, [this] { beat(); });
}

void EnginePulse::beat() {
    if (devTools_.isClosed()) return;
    if (*answered_) {
        waited_ = 0;
        answered_ = std::make_shared<bool>(false);
        devTools_.send({}, "Browser.getVersion", {},
                       [answered = answered_](const DevToolsReply& /*reply*/) { *answered = true; });
    } else if (++waited_ >= limits_.patience) {
        const auto stopped = stopped_; // a copy: it may destroy this object
        return stopped();
    }
    schedule();
}

} // namespace qrv::engine
