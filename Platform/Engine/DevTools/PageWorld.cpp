#include "Platform/Engine/DevTools/PageWorld.h"

namespace qrv::engine {

namespace {

constexpr int maximumTries = 3;

constexpr char disableScripts[] = "Emulation.setScriptExecutionDisabled";

} // namespace

PageWorld::PageWorld(DevToolsClient& devTools, std::string session, std::string mainFrameID)
    : devTools_(devTools), session_(std::move(session)), mainFrameID_(std::move(mainFrameID)) {}

DevToolsReply PageWorld::call(const char* method, const Json& params) {
    return devTools_.call(session_, method, params, patience);
}

void PageWorld::stopScripts() {
    call(disableScripts, Json::object({{"value", true}}));
}

bool PageWorld::make() {
    const Json params = Json::object({{"frameId", mainFrameID_}, {"worldName", name}});
    context_ = call("Page.createIsolatedWorld", params).result["executionContextId"].integer();
    return context_ != 0;
}

/// Ends a script that does not end by itself, and lets no other begin. Neither command is waited for: where
/// no script was running, the first one is answered only when the next script is.
void PageWorld::interrupt() {
    interrupted_ = true;
    devTools_.send(session_, "Runtime.terminateExecution");
    devTools_.send(session_, disableScripts, Json::object({{"value", true}}));
}

std::optional<Json> PageWorld::evaluate(const std::string& script) {
    return evaluate(script, false);
}

std::optional<Json> PageWorld::evaluatePromise(const std::string& script) {
    return evaluate(script, true);
}

std::optional<Json> PageWorld::evaluate(const std::string& script, bool awaitsPromise) {
    for (int tries = 0; tries < maximumTries && !devTools_.isClosed(); ++tries) {
        if (context_ == 0 && !make()) {
            interrupt();
            continue;
        }
        const DevToolsReply reply = call("Runtime.evaluate", Json::object({{"expression", script},
                                                                           {"contextId", context_},
                                                                           {"returnByValue", true},
                                                                           {"awaitPromise", awaitsPromise}}));
        if (reply.ok() && !reply.result.contains("exceptionDetails")) return reply.result["result"]["value"];
        context_ = 0;
        if (reply.status != DevToolsReply::Status::timedOut) continue;
        interrupt();
        // Without scripts, what a promise waits for may never come.
        if (awaitsPromise) break;
    }
    return std::nullopt;
}

} // namespace qrv::engine
