#pragma once

// What the tests of the engine's process share: scripts that stand in for an engine, and a look at what runs.

#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Engine/Process/EngineProcess.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace qrv::engine {

inline constexpr auto patience = std::chrono::seconds(30);

/// A directory that anybody may read and write, removed with its contents.
class OpenDirectory {
public:
    OpenDirectory();
    ~OpenDirectory();
    OpenDirectory(const OpenDirectory&) = delete;
    OpenDirectory& operator=(const OpenDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

    /// Writes an executable bash script and returns its path. It reads what saying(text) makes with `receive`
    /// into $message, texts of less than 24 letters, and with `say 'text'` it sends what said() understands.
    std::string addScript(const std::string& name, const std::string& body) const;

private:
    std::filesystem::path path_;
};

/// A message of nothing but a text, and that text.
Json saying(const std::string& text);
std::string said(const Json& message);

/// A search that finds this file only.
EngineSearch only(const std::string& path);

/// The engine that is installed.
std::string installedEngine();

/// Launches, and fails the test when that is not possible.
std::unique_ptr<EngineProcess> launch(EngineOptions options, NSRunLoop& loop);

/// The living processes of a process group, zombies left out.
std::vector<pid_t> livingInGroup(pid_t group);

/// Waits until the condition holds; false when it never did.
bool eventually(const std::function<bool()>& condition);

/// Runs the function in a child process, which ends with its result, and returns that; -1 when it died of a
/// signal.
int inChildProcess(const std::function<int()>& function);

/// Gives up root for good, like a program that an ordinary user runs.
void becomeOrdinaryUser();

/// From now on the kernel refuses new namespaces to the calling process and its children.
enum class Refused { userNamespaces, allNamespaces };
void refuseNamespaces(Refused refused);

/// From now on the kernel refuses this system call likewise.
void refuseCall(int number);

/// A session with the engine's first page.
std::string attachToPage(DevToolsClient& client);

/// The value of an expression in the page, after its promise is settled.
Json evaluate(DevToolsClient& client, const std::string& session, const std::string& expression);

} // namespace qrv::engine
