#pragma once

// A running engine and the connection to it.
//
//     auto launched = EngineProcess::launch({}, NSRunLoop::currentRunLoop());
//     if (auto* error = std::get_if<EngineLaunchError>(&launched)) ...
//     auto& engine = std::get<std::unique_ptr<EngineProcess>>(launched);
//     DevToolsClient client(*engine, NSRunLoop::currentRunLoop());
//
// launch returns as soon as the process exists; commands may be sent at once. An engine that dies before its
// first message is restarted transparently: it gets the same commands. If that fails too, the connection ends
// with a reason. Missing protections are logged. The engine's processes are watched: when one is lost that it
// cannot do without, or they hold more memory than they may, the engine is killed and the connection ends.
//
// The engine ends with this object, or when the process exits: terminate kills it and waits for its end. If
// the process ends in another way (a signal, _exit), the kernel kills the engine when the thread that
// launched it dies, and its renderers end with the connection to it. That thread must therefore live as long
// as the engine. Everything belongs to that thread.

#include "Platform/Engine/DevTools/DevToolsPipe.h"
#include "Platform/Engine/Process/EngineChild.h"
#include "Platform/Engine/Process/EngineLocator.h"
#include "Platform/Engine/Process/EngineWatch.h"
#include "Platform/Foundation/NSRunLoop.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace qrv::engine {

/// Whether WEB2PDF_REQUIRE_SANDBOX is 1.
bool environmentRequiresSandbox();

struct EngineOptions {
    EngineSearch search = EngineSearch::fromEnvironment();
    std::function<void(const std::string& line)> log = {};
    bool requireSandbox = environmentRequiresSandbox(); ///< rather fail than run the engine without its own
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

    SendResult send(const Json& message) override;

    /// Kills the engine with all its descendants and waits for their end, for at most ten seconds. No handler
    /// is called afterwards. The destructor does the same.
    void terminate();

    /// The limit of its processes together in bytes, and whether the engine was killed because of it.
    std::size_t memoryLimit() const { return memoryLimit_; }

    bool exceededMemory() const { return exceededMemory_; }

    /// The engine's process; -1 if there is none.
    pid_t pid() const { return child_ ? child_->pid() : -1; }

private:
    EngineProcess(std::string executable, EngineOptions options, NSRunLoop& loop);

    static void endAll();
    void start();
    void messageArrived(const Json& message);
    void connectionEnded();
    std::optional<std::string> logSteps();
    void look();
    void ended(std::string reason);
    void log(const std::string& line);

    std::string executable_; // its path
    EngineOptions options_;
    NSRunLoop& loop_;
    std::unique_ptr<EngineChild> child_;
    std::unique_ptr<DevToolsPipe> pipe_;
    std::optional<EngineWatch> watch_;
    NSRunLoop::Timer lookTimer_;
    std::size_t memoryLimit_;
    bool exceededMemory_ = false;
    int starts_ = 0;
    std::set<std::string> logged_;
    bool answered_ = false;
    bool ended_ = false;
    std::vector<Json> unanswered_; // sent before the first message came, for a restart
};

} // namespace qrv::engine
