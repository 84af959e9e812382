#include "Platform/Engine/DevTools/PageWorld.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace qrv::engine {

namespace {

constexpr int maximumTries = 3;
constexpr std::size_t mostFrames = 200;

constexpr char worldName[] = "web2pdf";
constexpr char disableScripts[] = "Emulation.setScriptExecutionDisabled";
constexpr char createWorld[] = "Page.createIsolatedWorld";
constexpr char evaluate[] = "Runtime.evaluate";
constexpr char callFunction[] = "Runtime.callFunctionOn";

Json worldParameters(const std::string& frameID) {
    return Json::object({{"frameId", frameID}, {"worldName", worldName}});
}

std::int64_t contextOf(const DevToolsReply& reply) {
    return reply.result["executionContextId"].integer();
}

Json sharedParameters(std::int64_t context) {
    return Json::object({{"expression", scripts::shared.source}, {"contextId", context}});
}

Json callParameters(const PageScript& script, const PageWorld::Arguments& arguments, std::int64_t context,
                    bool awaitsPromise) {
    std::vector<Json> values;
    values.reserve(arguments.size());
    for (const Json& argument : arguments) values.push_back(Json::object({{"value", argument}}));
    return Json::object({{"functionDeclaration", script.source},
                         {"arguments", Json::array(values)},
                         {"executionContextId", context},
                         {"returnByValue", true},
                         {"awaitPromise", awaitsPromise}});
}

/// "measure.js threw at line 12: TypeError: ...", with the place in the shared functions where it was thrown
/// there: "measure.js threw at line 9 of shared.js: ...".
std::string descriptionOf(const PageScript& script, const Json& exception) {
    constexpr std::size_t longestText = 300;
    const std::string text = exception["exception"]["description"].string(exception["text"].stringView());
    const std::string_view firstLine =
        std::string_view(text).substr(0, std::min(text.find('\n'), longestText));
    // Below it are the places of the stack. The engine counts lines from 0.
    const bool isShared = text.find("/" + std::string(scripts::shared.name) + ":") <
                          text.find("/" + std::string(script.name) + ":");
    return std::string(script.name) + " threw at line " +
           std::to_string(exception["lineNumber"].integer() + 1) +
           (isShared ? " of " + std::string(scripts::shared.name) : "") + ": " + std::string(firstLine);
}

} // namespace

PageWorld::PageWorld(DevToolsClient& devTools, std::string session, std::string mainFrameID, Log log)
    : devTools_(devTools), session_(std::move(session)), mainFrameID_(std::move(mainFrameID)),
      log_(std::move(log)) {}

void PageWorld::runInNewDocuments(const PageScript& program, Place place) {
    Json params = place == Place::ownWorld
                      ? Json::object({{"source", program.source}, {"worldName", worldName}})
                      : Json::object({{"source", program.source}});
    devTools_.send(session_, "Page.addScriptToEvaluateOnNewDocument", params);
}

DevToolsReply PageWorld::command(const char* method, const Json& params) {
    return devTools_.call(session_, method, params, patience);
}

DevToolsReply PageWorld::ask(const char* method, const Json& params) {
    DevToolsReply reply = command(method, params);
    if (reply.status != DevToolsReply::Status::timedOut || interrupted_) return reply;
    interrupt();
    return command(method, params);
}

void PageWorld::stopScripts() {
    command(disableScripts, Json::object({{"value", true}}));
}

void PageWorld::halt() {
    devTools_.send(session_, disableScripts, Json::object({{"value", true}}));
    devTools_.send(session_, "Page.stopLoading"); // for what refreshes itself without scripts
}

bool PageWorld::make() {
    context_ = contextOf(command(createWorld, worldParameters(mainFrameID_)));
    if (context_ == 0) return false;
    // Its reply comes before that of the first call, which tells if the world is gone.
    devTools_.send(session_, evaluate, sharedParameters(context_));
    return true;
}

/// Ends a script that does not end by itself, and lets no other begin. Neither command is waited for: where
/// no script was running, the first one is answered only when the next script is.
void PageWorld::interrupt() {
    interrupted_ = true;
    devTools_.send(session_, "Runtime.terminateExecution");
    devTools_.send(session_, disableScripts, Json::object({{"value", true}}));
}

std::optional<Json> PageWorld::call(const PageScript& script, const Arguments& arguments) {
    return call(script, arguments, false);
}

std::optional<Json> PageWorld::await(const PageScript& script, const Arguments& arguments) {
    return call(script, arguments, true);
}

std::optional<Json> PageWorld::call(const PageScript& script, const Arguments& arguments,
                                    bool awaitsPromise) {
    for (int tries = 0; tries < maximumTries && !devTools_.isClosed(); ++tries) {
        if (context_ == 0 && !make()) {
            interrupt();
            continue;
        }
        const DevToolsReply reply =
            command(callFunction, callParameters(script, arguments, context_, awaitsPromise));
        if (reply.ok()) return answerOf(script, reply.result);
        context_ = 0;
        if (reply.status != DevToolsReply::Status::timedOut) continue;
        interrupt();
        // Without scripts, what a promise waits for may never come.
        if (awaitsPromise) break;
    }
    return std::nullopt;
}

void PageWorld::callInFrame(const std::string& frameID, const PageScript& script, const Arguments& arguments,
                            AnswerHandler handler) {
    devTools_.send(session_, createWorld, worldParameters(frameID),
                   [this, &script, arguments, handler = std::move(handler)](const DevToolsReply& world) {
                       if (!world.ok()) {
                           handler(std::nullopt);
                           return;
                       }
                       devTools_.send(session_, evaluate, sharedParameters(contextOf(world)));
                       devTools_.send(session_, callFunction,
                                      callParameters(script, arguments, contextOf(world), false),
                                      [this, &script, handler](const DevToolsReply& reply) {
                                          handler(reply.ok() ? answerOf(script, reply.result) : std::nullopt);
                                      });
                   });
}

std::vector<PageWorld::FrameAnswer> PageWorld::callInFrames(const PageScript& script,
                                                            const Arguments& arguments) {
    struct Answers {
        std::vector<std::optional<Json>> values;
        std::size_t outstanding = 0;
    };

    const std::vector<std::string> frames = frameIDs();
    // Shared with the handlers of frames that do not answer in time.
    const auto answers = std::make_shared<Answers>();
    answers->values.resize(frames.size());
    answers->values[0] = call(script, arguments);
    answers->outstanding = frames.size() - 1;
    for (std::size_t at = 1; at < frames.size(); ++at) {
        callInFrame(frames[at], script, arguments, [answers, at](const std::optional<Json>& answer) {
            answers->values[at] = answer;
            --answers->outstanding;
        });
    }
    // For as long as one or the other still comes.
    const auto comesAnother = [&] {
        const std::size_t before = answers->outstanding;
        return devTools_.runUntil([&] { return answers->outstanding < before; }, patience);
    };
    while (answers->outstanding > 0) {
        if (comesAnother()) continue;
        if (interrupted_) break;
        interrupt();
    }
    std::vector<FrameAnswer> found;
    for (std::size_t at = 0; at < frames.size(); ++at) {
        if (const auto& answer = answers->values[at]) found.push_back({frames[at], *answer});
    }
    return found;
}

/// The main frame, then its descendants in the order of the tree.
std::vector<std::string> PageWorld::frameIDs() {
    std::vector<std::string> found{mainFrameID_};
    std::vector<Json> waiting{command("Page.getFrameTree", {}).result["frameTree"]};
    while (!waiting.empty() && found.size() < mostFrames) {
        const Json tree = waiting.back();
        waiting.pop_back();
        const std::string frame = tree["frame"]["id"].string();
        if (!frame.empty() && frame != mainFrameID_) found.push_back(frame);
        const std::vector<Json> children = tree["childFrames"].elements();
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
    return found;
}

/// Nothing when the script threw: it would do so again.
std::optional<Json> PageWorld::answerOf(const PageScript& script, const Json& result) {
    const Json exception = result["exceptionDetails"];
    if (exception.isNull()) return result["result"]["value"];
    if (toldToThrow_.insert(script.name).second && log_) log_(descriptionOf(script, exception));
    return std::nullopt;
}

} // namespace qrv::engine
