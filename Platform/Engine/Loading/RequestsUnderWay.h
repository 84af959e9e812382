#pragma once

// Tracks a page's requests: how many have ended, and which are under way.

#include "Platform/Engine/DevTools/DevToolsClient.h"

#include <map>
#include <string>
#include <vector>

namespace qrv::engine {

class RequestsUnderWay {
public:
    /// Listens to a page's events.
    void attach(DevToolsClient& devTools, const std::string& session);

    /// Whether everything requested has arrived or failed. Video and sound do not count, since they may
    /// arrive for as long as they play, nor do shared workers' scripts and the requests of frames that are
    /// gone.
    bool isEmpty() const { return frames_.empty(); }

    /// How many requests have ended.
    std::size_t ended() const { return ended_; }

private:
    void willBeSent(const Json& event);
    void done(const Json& event);
    void frameGone(const std::string& frame);

    std::map<std::string, std::string> frames_; // request -> the frame that made it
    std::size_t ended_ = 0;
    std::vector<DevToolsClient::Subscription> subscriptions_;
};

} // namespace qrv::engine
