#include "Platform/Engine/Process/EngineProcess.h"

#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

// What a program in the engine's place can do to the rest of the machine.

namespace qrv::engine {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// The processes, zombies left out, whose command line begins with this text.
std::vector<pid_t> processesOf(const std::string& command) {
    std::vector<pid_t> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        std::ifstream file(entry.path() / "cmdline");
        std::string line;
        std::getline(file, line);
        if (line.starts_with(command)) found.push_back(std::stoi(name));
    }
    return found;
}

/// A socket in the file system to which anybody may send.
class OpenListener {
public:
    explicit OpenListener(std::string path) : path_(std::move(path)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path_.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        std::filesystem::permissions(path_, std::filesystem::perms::all);
    }

    const std::string& path() const { return path_; }

private:
    FileDescriptor socket_{::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    std::string path_;
};

class IntrusionTest : public ::testing::Test {
protected:
    explicit IntrusionTest(const std::string& name = "intruder") : intruder_(directory_.path() / name) {
        std::filesystem::copy_file(INTRUDER, intruder_);
        std::ofstream(elsewhere_.path() / "secret") << "secret";
    }

    /// What became of each order.
    std::vector<std::string> obey(const std::string& orders) {
        std::ofstream(directory_.path() / "orders") << orders;
        said_.clear();
        engine_ = launch(
            {.search = only(intruder_), .log = [this](const std::string& line) { log_ += line + "\n"; }},
            loop_);
        engine_->setMessageHandler([this](const Json& message) { said_ = said(message); });
        engine_->setCloseHandler([this](const std::string& reason) { said_ = reason; });
        loop_.runUntil([this] { return !said_.empty(); }, std::chrono::steady_clock::now() + patience);
        std::istringstream lines(said_);
        std::vector<std::string> results;
        for (std::string line; std::getline(lines, line);) results.push_back(line);
        return results;
    }

    std::string secret() const { return (elsewhere_.path() / "secret").string(); }

    /// Orders that fail with EACCES wherever there are file rules.
    std::string fileOrders() const {
        return "read /etc/passwd\nread " + secret() + "\nwrite " + secret() + "\nmake " + secret() +
               "2\nlist /\nlist /tmp\nlist /home\nlist /etc\nread /usr/bin/env\nmake /usr/lib/new\nmake " +
               intruder_ + "2\nexecute /bin/sh\n";
    }

    /// Whether all that is never granted is refused.
    bool isShutOut() {
        const auto files = obey(fileOrders());
        EXPECT_THAT(files, Each("EACCES"));
        const auto calls =
            obey("local-socket x\ninternet-socket x\nnetlink-socket x\nring x\nmount /tmp\ntrace x\n");
        EXPECT_THAT(calls, ElementsAre("EACCES", "EACCES", "EACCES", "ENOSYS", "EPERM", "EPERM"));
        EXPECT_THAT(obey("send " + listener_.path() + "\n"), Each("EACCES"));
        // What is left is what an engine needs.
        const auto needs =
            obey("read /dev/urandom\nwrite /dev/null\nread /etc/fonts/fonts.conf\nread /proc/self/maps\n");
        EXPECT_THAT(needs, Each("done"));
        return !HasFailure();
    }

    /// What becomes of orders that aim at this process.
    std::vector<std::string> attackTool() {
        const std::string self = std::to_string(::getpid());
        return obey("signal " + self + "\nread /proc/" + self + "/environ\nwrite /proc/" + self +
                    "/oom_score_adj\n");
    }

    bool leavesNothing() {
        obey("detach x\n");
        const auto before = processesOf(intruder_).size();
        engine_.reset();
        return before == 2 && processesOf(intruder_).empty();
    }

    NSRunLoop loop_;
    OpenDirectory directory_;
    OpenDirectory elsewhere_;
    OpenListener listener_{elsewhere_.path() / "listener"};
    std::string intruder_;
    std::unique_ptr<EngineProcess> engine_;
    std::string log_;
    std::string said_; // the engine's last answer, or why it ended
};

TEST_F(IntrusionTest, WithNamespaces) {
    EXPECT_TRUE(isShutOut());
    EXPECT_THAT(attackTool(), ElementsAre("ESRCH", "ENOENT", "ENOENT"));
    EXPECT_THAT(obey("list /dev/shm\nmake /dev/shm/new\n"), Each("done"));
    EXPECT_FALSE(std::filesystem::exists("/dev/shm/new"));
    EXPECT_TRUE(leavesNothing());
    EXPECT_EQ(log_, "");
}

TEST_F(IntrusionTest, AsAnOrdinaryUser) {
    EXPECT_EQ(inChildProcess([this] {
                  becomeOrdinaryUser();
                  const bool safe = isShutOut();
                  const bool alone = attackTool() == std::vector<std::string>{"ESRCH", "ENOENT", "ENOENT"};
                  return safe && alone && leavesNothing() && log_.empty() ? 0 : 1;
              }),
              0);
}

/// The full browser may make a socket.
class IntrusionInABrowserTest : public IntrusionTest {
protected:
    IntrusionInABrowserTest() : IntrusionTest("chromium") {}
};

TEST_F(IntrusionInABrowserTest, ItsSocketReachesNobody) {
    EXPECT_THAT(obey("local-socket x\n"), Each("done"));
    EXPECT_THAT(obey("connect " + listener_.path() + "\nsend " + listener_.path() +
                     "\nlocal-datagrams x\ninternet-socket x\nnetlink-socket x\n"),
                Each("EACCES"));
    EXPECT_THAT(obey(fileOrders()), Each("EACCES"));
    EXPECT_THAT(attackTool(), ElementsAre("ESRCH", "ENOENT", "ENOENT"));
}

class IntrusionWithoutNamespacesTest : public IntrusionTest {
protected:
    /// Runs in a child process.
    int tryAll() {
        ::setenv("TMPDIR", temporary_.path().c_str(), 1);
        refuseNamespaces(Refused::allNamespaces);
        EXPECT_TRUE(isShutOut());
        // Only that other processes exist can not be hidden.
        EXPECT_THAT(attackTool(), ElementsAre("EPERM", "EACCES", "EACCES"));
        EXPECT_THAT(obey("list " + temporary_.path().string() + "\nmake /dev/shm/new\n"), Each("EACCES"));
        EXPECT_FALSE(std::filesystem::is_empty(temporary_.path())); // the engine has a folder there
        engine_.reset();
        EXPECT_TRUE(std::filesystem::is_empty(temporary_.path()));
        return HasFailure() ? 1 : 0;
    }

    OpenDirectory temporary_;
};

TEST_F(IntrusionWithoutNamespacesTest, FilesAndSocketsAreClosedAllTheSame) {
    EXPECT_EQ(inChildProcess([this] { return tryAll(); }), 0);
}

TEST_F(IntrusionWithoutNamespacesTest, AndToTheEngineOfAnOrdinaryUser) {
    EXPECT_EQ(inChildProcess([this] {
                  becomeOrdinaryUser();
                  return tryAll();
              }),
              0);
}

TEST_F(IntrusionTest, WithoutFileRulesSocketsAreClosedAndThatIsLogged) {
    EXPECT_EQ(inChildProcess([this] {
                  refuseCall(SYS_landlock_create_ruleset);
                  EXPECT_THAT(obey("local-socket x\nread /etc/passwd\n"), ElementsAre("EACCES", "done"));
                  EXPECT_THAT(log_, HasSubstr("no file rules for the engine; it can open what its user can"));
                  return HasFailure() ? 1 : 0;
              }),
              0);
}

TEST_F(IntrusionTest, WithoutMountsTheTemporaryFolderIsRemoved) {
    EXPECT_EQ(inChildProcess([this] {
                  ::setenv("TMPDIR", elsewhere_.path().c_str(), 1);
                  refuseCall(SYS_mount);
                  EXPECT_THAT(obey("list " + elsewhere_.path().string() + "\nmake /dev/shm/new\n"),
                              Each("EACCES"));
                  EXPECT_THAT(log_, HasSubstr("no file system of its own for the engine's temporary files"));
                  EXPECT_TRUE(leavesNothing());
                  std::filesystem::remove(secret());
                  std::filesystem::remove(listener_.path());
                  EXPECT_TRUE(std::filesystem::is_empty(elsewhere_.path()));
                  return HasFailure() ? 1 : 0;
              }),
              0);
}

TEST_F(IntrusionTest, ADetachedProcessDiesWithTheToolThatIsKilled) {
    const pid_t starter = ::fork();
    if (starter == 0) {
        obey("detach x\n");
        const std::ofstream ready(elsewhere_.path() / "ready");
        for (;;) ::pause();
    }
    EXPECT_TRUE(eventually([this] { return std::filesystem::exists(elsewhere_.path() / "ready"); }));
    EXPECT_EQ(processesOf(intruder_).size(), 2u);
    ::kill(starter, SIGKILL);
    ::waitpid(starter, nullptr, 0);
    EXPECT_TRUE(eventually([this] { return processesOf(intruder_).empty(); }));
}

} // namespace
} // namespace qrv::engine
