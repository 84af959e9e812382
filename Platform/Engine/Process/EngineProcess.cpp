#include "Platform/Engine/Process/EngineProcess.h"

#include "Platform/Engine/Process/EngineCommand.h"
#include "Platform/Engine/Process/EngineMemory.h"

#include <cstdlib>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace qrv::engine {

namespace {

/// One restart for an engine that dies by chance, and one for an engine whose own sandbox turns out not to
/// work.
constexpr int mostStarts = 3;

/// The running engines. Never destroyed: needed until the very end of the process.
std::set<EngineProcess*>& running() {
    static auto* engines = new std::set<EngineProcess*>;
    return *engines;
}

} // namespace

bool environmentRequiresSandbox() {
    const char* value = std::getenv("WEB2PDF_REQUIRE_SANDBOX");
    return value && std::string_view(value) == "1";
}

EngineProcess::LaunchResult EngineProcess::launch(EngineOptions options, NSRunLoop& loop) {
    using Kind = EngineLaunchError::Kind;
    auto executable = locateEngine(options.search);
    if (!executable) {
        const std::string& chosen = options.search.chosen;
        const std::string place = chosen.empty() ? "" : " at " + chosen;
        return EngineLaunchError{Kind::notInstalled, "There is no web engine" + place +
                                                         ". Install the package chromium-headless-shell."};
    }
    try {
        std::unique_ptr<EngineProcess> engine(new EngineProcess(*executable, std::move(options), loop));
        engine->start();
        return engine;
    } catch (const std::system_error& error) {
        return EngineLaunchError{Kind::failed, error.what()};
    }
}

EngineProcess::EngineProcess(std::string executable, EngineOptions options, NSRunLoop& loop)
    : executable_(std::move(executable)), options_(std::move(options)), loop_(loop),
      memoryLimit_(engineMemoryLimit(options_.log)) {
    [[maybe_unused]] static const int registered = std::atexit(&EngineProcess::endAll);
    running().insert(this);
}

EngineProcess::~EngineProcess() {
    running().erase(this);
    terminate();
}

/// Only ends the processes: the run loops are already destroyed.
void EngineProcess::endAll() {
    for (EngineProcess* engine : running()) {
        if (engine->child_) engine->child_->terminate();
    }
}

void EngineProcess::start() {
    ++starts_;
    pipe_.reset();
    child_.reset();
    child_ = std::make_unique<EngineChild>(EngineChild::Command{
        .arguments = engineArguments(executable_, true),
        .argumentsWithoutSandbox = engineArguments(executable_, false),
        .environment = engineEnvironment(),
        .checkEngineSandbox = starts_ > 1, // takes time, and is rarely needed
        .requireEngineSandbox = options_.requireSandbox,
        .memoryLimit = memoryLimit_,
    });
    watch_.emplace(child_->pid(), memoryLimit_);
    lookTimer_ = loop_.scheduleTimer(EngineWatch::lookInterval, [this] { look(); });
    pipe_ = std::make_unique<DevToolsPipe>(child_->takeSocket(), loop_);
    pipe_->setMessageHandler([this](const Json& message) { messageArrived(message); });
    pipe_->setCloseHandler([this](const std::string&) { connectionEnded(); });
}

DevToolsTransport::SendResult EngineProcess::send(const Json& message) {
    if (ended_) return SendResult::closed;
    const SendResult result = pipe_->send(message);
    if (answered_ || result == SendResult::tooLarge) return result;
    unanswered_.push_back(message); // even if this start has just failed: the next one gets it
    return SendResult::accepted;
}

void EngineProcess::messageArrived(const Json& message) {
    if (!std::exchange(answered_, true)) {
        unanswered_ = {};
        logSteps();
    }
    deliver(message);
}

void EngineProcess::connectionEnded() {
    child_->terminate();
    ended("the web engine " + child_->endText());
}

void EngineProcess::look() {
    const auto fault = watch_->look(answered_);
    if (!fault) {
        lookTimer_ = loop_.scheduleTimer(EngineWatch::lookInterval, [this] { look(); });
        return;
    }
    child_->terminate();
    switch (*fault) {
    case EngineWatch::Fault::ended:
        return ended("the web engine " + child_->endText());
    case EngineWatch::Fault::zygoteLost:
        return ended("the web engine lost the process that starts its others");
    case EngineWatch::Fault::pageLost:
        return ended("the web engine lost its page process");
    case EngineWatch::Fault::memoryExceeded:
        exceededMemory_ = true;
        return ended("the web engine used more memory than it may");
    }
}

/// Called when nothing of the engine runs any more.
void EngineProcess::ended(std::string reason) {
    lookTimer_.cancel();
    pipe_.reset();
    const std::optional<std::string> obstacle = logSteps();
    if (obstacle) reason = *obstacle;
    if (!answered_ && !obstacle && !exceededMemory_ && starts_ < mostStarts) {
        log(reason + " before its first message; it is started again");
        try {
            start();
            for (const auto& message : unanswered_) pipe_->send(message);
            return;
        } catch (const std::system_error& error) {
            reason = error.what();
        }
    }
    ended_ = true;
    deliverClose(reason);
}

/// Returns the text of the fatal step, if there was one.
std::optional<std::string> EngineProcess::logSteps() {
    std::optional<std::string> fatal;
    for (const LaunchStep& step : child_->takeSteps()) {
        if (step.isFatal()) fatal = step.text();
        log(step.text());
    }
    return fatal;
}

/// Logs each line once: a restart meets the same refusals.
void EngineProcess::log(const std::string& line) {
    if (logged_.insert(line).second && options_.log) options_.log(line);
}

void EngineProcess::terminate() {
    ended_ = true;
    lookTimer_.cancel();
    pipe_.reset();
    if (child_) child_->terminate();
}

} // namespace qrv::engine
