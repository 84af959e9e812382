#include "Platform/Engine/DevTools/DevToolsClient.h"

#include <optional>
#include <utility>

namespace qrv::engine {

namespace {

Json commandMessage(std::int64_t id, const std::string& session, std::string_view method,
                    const Json& params) {
    std::vector<Json::Member> message{{"id", id}, {"method", method}};
    if (!session.empty()) message.emplace_back("sessionId", session);
    if (!params.isNull()) message.emplace_back("params", params);
    return Json::object(std::move(message));
}

DevToolsReply replyOf(const Json& message) {
    if (message.contains("result"))
        return {.status = DevToolsReply::Status::result, .result = message["result"]};
    Json error = message["error"];
    return {.status = DevToolsReply::Status::error,
            .result = {},
            .errorCode = error["code"].integer(),
            .errorMessage = error["message"].string("unknown error")};
}

DevToolsReply failure(DevToolsReply::Status status, std::string message) {
    return {.status = status, .result = {}, .errorCode = 0, .errorMessage = std::move(message)};
}

} // namespace

DevToolsClient::DevToolsClient(DevToolsTransport& transport, NSRunLoop& loop)
    : transport_(transport), loop_(loop) {
    transport_.setMessageHandler([this](const Json& message) { messageArrived(message); });
    transport_.setCloseHandler([this](const std::string& reason) { connectionEnded(reason); });
}

DevToolsClient::~DevToolsClient() {
    transport_.setMessageHandler({});
    transport_.setCloseHandler({});
}

void DevToolsClient::send(const std::string& session, std::string_view method, const Json& params,
                          ReplyHandler callback) {
    sendCommand(session, method, params, std::move(callback));
}

std::int64_t DevToolsClient::sendCommand(const std::string& session, std::string_view method,
                                         const Json& params, ReplyHandler callback) {
    using Status = DevToolsReply::Status;
    std::int64_t id = ++lastId_;
    auto sent = closed_ ? DevToolsTransport::SendResult::closed
                        : transport_.send(commandMessage(id, session, method, params));
    switch (sent) {
    case DevToolsTransport::SendResult::accepted:
        pending_.emplace(id, Pending{session, std::move(callback)});
        break;
    case DevToolsTransport::SendResult::tooLarge:
        answerSoon(std::move(callback), failure(Status::tooLarge, "the message is too large for the engine"));
        break;
    case DevToolsTransport::SendResult::closed:
        answerSoon(std::move(callback), failure(Status::closed, closeReason_));
        break;
    }
    return id;
}

DevToolsReply DevToolsClient::call(const std::string& session, std::string_view method, const Json& params,
                                   std::chrono::nanoseconds timeout) {
    auto reply = std::make_shared<std::optional<DevToolsReply>>();
    auto deadline = std::chrono::steady_clock::now() + timeout;
    auto id =
        sendCommand(session, method, params, [reply](const DevToolsReply& arrived) { *reply = arrived; });
    // A client that a handler destroys takes the callback with it, the other holder of the reply.
    auto destroyed = [&reply] { return reply.use_count() == 1; };
    loop_.runUntil([&] { return reply->has_value() || destroyed(); }, deadline);
    if (*reply) return **reply;
    if (destroyed()) return failure(DevToolsReply::Status::closed, "the client was destroyed");
    pending_.erase(id);
    return failure(DevToolsReply::Status::timedOut, std::string(method) + " was not answered in time");
}

bool DevToolsClient::runUntil(const std::function<bool()>& isDone, std::chrono::nanoseconds timeout) {
    return loop_.runUntil(isDone, std::chrono::steady_clock::now() + timeout);
}

void DevToolsClient::callSoon(NSRunLoop::Handler handler) {
    auto place = posted_.emplace(posted_.end());
    *place = loop_.performSoon([this, place, handler = std::move(handler)] {
        posted_.erase(place); // first: the handler may destroy this object
        handler();
    });
}

void DevToolsClient::answerSoon(ReplyHandler callback, DevToolsReply reply) {
    if (callback) callSoon([callback = std::move(callback), reply = std::move(reply)] { callback(reply); });
}

DevToolsClient::Subscription DevToolsClient::listen(const std::string& session, std::string_view method,
                                                    EventHandler handler) {
    auto shared = std::make_shared<EventHandler>(std::move(handler));
    Listeners& listeners = listeners_[{session, std::string(method)}];
    std::erase_if(listeners, [](const auto& listener) { return listener.expired(); });
    listeners.push_back(shared);
    return Subscription(std::move(shared));
}

/// Drops replies that nobody waits for: the engine is not trusted to be well-behaved.
void DevToolsClient::messageArrived(const Json& message) {
    if (message.contains("id"))
        replyArrived(message);
    else
        eventArrived(message);
}

void DevToolsClient::replyArrived(const Json& message) {
    auto found = pending_.find(message["id"].integer(-1));
    if (found == pending_.end()) return;
    auto callback = std::move(found->second.callback);
    pending_.erase(found);
    if (callback) callback(replyOf(message));
}

void DevToolsClient::eventArrived(const Json& message) {
    std::string method = message["method"].string();
    Json params = message["params"];
    // When a session ends, the engine does not answer its commands.
    if (method == "Target.detachedFromTarget") sessionEnded(params["sessionId"].string());

    auto found = listeners_.find({message["sessionId"].string(), method});
    if (found == listeners_.end()) return;
    std::erase_if(found->second, [](const auto& listener) { return listener.expired(); });
    // A copy: handlers may add and remove listeners, or destroy this object.
    for (const auto& listener : Listeners(found->second))
        if (auto handler = listener.lock()) (*handler)(params);
}

void DevToolsClient::sessionEnded(const std::string& session) {
    for (auto entry = pending_.begin(); entry != pending_.end();) {
        if (session.empty() || entry->second.session != session) {
            ++entry;
            continue;
        }
        answerSoon(std::move(entry->second.callback),
                   failure(DevToolsReply::Status::closed, "the session ended"));
        entry = pending_.erase(entry);
    }
}

/// Each callback gets its own turn of the loop, so that one that throws does not prevent the others.
void DevToolsClient::connectionEnded(const std::string& reason) {
    if (closed_) return;
    closed_ = true;
    transport_.setMessageHandler({});
    closeReason_ = reason;
    for (auto& [id, pending] : std::exchange(pending_, {}))
        answerSoon(std::move(pending.callback), failure(DevToolsReply::Status::closed, reason));
    callSoon([this] {
        if (auto handler = closedHandler_) handler(closeReason_);
    });
}

} // namespace qrv::engine
