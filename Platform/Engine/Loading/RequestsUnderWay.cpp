#include "Platform/Engine/Loading/RequestsUnderWay.h"

namespace qrv::engine {

namespace {

/// Belongs to no document that is being loaded. Its end is not told if it cannot be had.
bool isScriptOfSharedWorker(const Json& event) {
    return event["loaderId"].isString() && event["loaderId"].stringView().empty() &&
           event["documentURL"].stringView() == event["request"]["url"].stringView();
}

} // namespace

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
    if (type == "Script" && isScriptOfSharedWorker(event)) return;
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
