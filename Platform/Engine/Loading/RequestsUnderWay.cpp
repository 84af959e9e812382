#include "Platform/Engine/Loading/RequestsUnderWay.h"

namespace qrv::engine {

void RequestsUnderWay::attach(DevToolsClient& devTools, const std::string& session) {
    const auto listen = [&](const char* method, DevToolsClient::EventHandler handler) {
        subscriptions_.push_back(devTools.listen(session, method, std::move(handler)));
    };
    listen("Network.requestWillBeSent", [this](const Json& event) { willBeSent(event); });
    listen("Network.loadingFinished", [this](const Json& event) { done(event); });
    listen("Network.loadingFailed", [this](const Json& event) { done(event); });
    listen("Page.frameDetached", [this](const Json& event) { frameGone(event["frameId"].string()); });
    listen("Page.frameNavigated", [this](const Json& event) { frameGone(event["frame"]["id"].string()); });
}

void RequestsUnderWay::willBeSent(const Json& event) {
    const std::string type = event["type"].string();
    if (type == "Media" || type == "EventSource" || type == "Ping") return;
    frames_[event["requestId"].string()] = event["frameId"].string();
}

void RequestsUnderWay::done(const Json& event) {
    ++ended_;
    frames_.erase(event["requestId"].string());
}

/// A frame's requests end with its page, some of them without an event. Those of the new page come later.
void RequestsUnderWay::frameGone(const std::string& frame) {
    std::erase_if(frames_, [&](const auto& request) { return request.second == frame; });
}

} // namespace qrv::engine
