#pragma once

// Evaluates scripts in a page, in a world of their own that the page's scripts do not reach. Every operation
// runs the loop until the engine has answered.

#include "Platform/Engine/DevTools/DevToolsClient.h"

#include <cstdint>
#include <optional>
#include <string>

namespace qrv::engine {

class PageWorld {
public:
    /// The name under which the engine knows the world.
    static constexpr char name[] = "web2pdf";

    /// How long a page may take for an answer; a page whose script never ends does not answer.
    static constexpr std::chrono::milliseconds patience{3000};

    /// The client must outlive the world. `mainFrameID` is the engine's name of the main frame.
    PageWorld(DevToolsClient& devTools, std::string session, std::string mainFrameID);

    /// The value of an expression, or of its promise; nothing when the page does not answer. A world that is
    /// lost, as by a navigation, is made anew. A page that does not answer in time is interrupted.
    std::optional<Json> evaluate(const std::string& script);
    std::optional<Json> evaluatePromise(const std::string& script);

    /// Sends a command to the page and waits for its reply.
    DevToolsReply call(const char* method, const Json& params);

    /// Lets no script of the page's run from now on.
    void stopScripts();

    /// True once the page did not answer, and its scripts were stopped: promises and timers stand still.
    bool isInterrupted() const { return interrupted_; }

private:
    std::optional<Json> evaluate(const std::string& script, bool awaitsPromise);
    bool make();
    void interrupt();

    DevToolsClient& devTools_;
    std::string session_;
    std::string mainFrameID_;
    std::int64_t context_ = 0; // 0 when there is none
    bool interrupted_ = false;
};

} // namespace qrv::engine
