#pragma once

// A transport without an engine: keeps what is sent and says what the test tells it to.

#include "Platform/Engine/DevTools/DevToolsTransport.h"
#include "Platform/Engine/DevTools/Json.h"

#include <vector>

namespace qrv::engine {

class ScriptedTransport : public DevToolsTransport {
public:
    SendResult send(const Json& message) override {
        if (nextResult == SendResult::accepted) sent.push_back(message);
        return nextResult;
    }

    void receive(const Json& message) { deliver(message); }

    void reply(std::int64_t id, const Json& result) {
        receive(Json::object({{"id", id}, {"result", result}}));
    }

    void emit(const std::string& session, const std::string& method, const Json& params) {
        receive(Json::object({{"method", method}, {"params", params}, {"sessionId", session}}));
    }

    void end(const std::string& reason) { deliverClose(reason); }

    std::vector<Json> sent;
    SendResult nextResult = SendResult::accepted;
};

} // namespace qrv::engine
