#pragma once

// A running engine and the connection to it.
//
//     auto launched = EngineProcess::launch({}, NSRunLoop::currentRunLoop());
//     if (auto* error = std::get_if<EngineLaunchError>(&launched)) ...
//     auto& engine = std::get<std::unique_ptr<EngineProcess>>(launched);
//     DevToolsClient client(*engine, NSRunLoop::currentRunLoop());
//
// launch returns as soon as the process exists; commands may be sent at once. An engine that dies before its
// first message is started again and gets the same commands, which nobody notices; when that fails too, the
// connection ends with a reason. Which protection could not be had is told through the log.
//
// The engine is gone when this object is, and before the process is when that ends by exit: terminate kills
// it and waits for its end. When the process ends without that (a signal, _exit), the kernel kills the engine
// as the thread that launched it dies, and its renderers end with the connection to it. That thread must
// therefore live as long as the engine. Everything belongs to it.

#include "Platform/Engine/DevTools/DevToolsPipe.h"
#include "Platform/Engine/Process/EngineChild.h"
#include "Platform/Engine/Process/EngineLocator.h"
#include "Platform/Foundation/NSRunLoop.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace qrv::engine {

struct EngineOptions {
    EngineSearch search = EngineSearch::fromEnvironment();
    std::function<void(const std::string& line)> log = {};
};

struct EngineLaunchError {
    enum class Kind { notInstalled, failed };

    Kind kind;
    std::string message;
};

class EngineProcess : public DevToolsTransport {
public:
    using LaunchResult = std::variant<std::unique_ptr<EngineProcess>, EngineLaunchError>;

    /// The loop must outlive the engine.
    static LaunchResult launch(EngineOptions options, NSRunLoop& loop);
    ~EngineProcess() override;

    SendResult send(std::string message) override;

    /// Kills the engine with all its descendants and waits for their end, for ten seconds at most. No handler
    /// is called any more. The destructor does the same.
    void terminate();

    /// The engine's process; -1 when there is none.
    pid_t pid() const { return child_ ? child_->pid() : -1; }

private:
    EngineProcess(EngineExecutable executable, EngineOptions options, NSRunLoop& loop);

    static void endAll();
    void start();
    void messageArrived(std::string_view message);
    void connectionEnded();
    bool logSteps();
    void log(const std::string& line);

    EngineExecutable executable_;
    EngineOptions options_;
    NSRunLoop& loop_;
    std::unique_ptr<EngineChild> child_;
    std::unique_ptr<DevToolsPipe> pipe_;
    int starts_ = 0;
    std::set<std::string> logged_;
    bool answered_ = false;
    bool ended_ = false;
    std::vector<std::string> unanswered_; // what was sent before the first message came, for another start
};

} // namespace qrv::engine
