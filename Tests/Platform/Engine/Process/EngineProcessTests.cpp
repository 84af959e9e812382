#include "Platform/Engine/Process/EngineProcess.h"

#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv::engine {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class EngineProcessTest : public ::testing::Test {
protected:
    // Starts a script in the engine's place.
    void start(const std::string& body) {
        engine_ = launch({.search = only(directory_.addScript("engine", body)),
                          .log = [this](const std::string& line) { note(line); }},
                         loop_);
        engine_->setMessageHandler([this](const Json& message) { messages_.push_back(said(message)); });
        engine_->setCloseHandler([this](const std::string& reason) { closings_.push_back(reason); });
    }

    // A script can leave nothing behind that a later one would find: a file tells it that it is started
    // again.
    void note(const std::string& line) {
        log_.push_back(line);
        std::ofstream(directory_.path() / "again");
    }

    bool runUntil(const std::function<bool()>& predicate) {
        return loop_.runUntil(predicate, std::chrono::steady_clock::now() + patience);
    }

    // What the script says first.
    std::string firstMessage() {
        EXPECT_TRUE(runUntil([&] { return !messages_.empty() || !closings_.empty(); }));
        return messages_.empty() ? "nothing" : messages_.front();
    }

    NSRunLoop loop_;
    OpenDirectory directory_;
    std::unique_ptr<EngineProcess> engine_;
    std::vector<std::string> messages_;
    std::vector<std::string> closings_;
    std::vector<std::string> log_;
};

TEST_F(EngineProcessTest, TellsThatNoEngineIsInstalled) {
    auto result = EngineProcess::launch({.search = only("/nonexistent/engine"), .log = {}}, loop_);
    auto* error = std::get_if<EngineLaunchError>(&result);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->kind, EngineLaunchError::Kind::notInstalled);
    EXPECT_EQ(error->message,
              "There is no web engine at /nonexistent/engine. Install the package chromium-headless-shell.");

    result = EngineProcess::launch({.search = {}, .log = {}}, loop_);
    error = std::get_if<EngineLaunchError>(&result);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->message, "There is no web engine. Install the package chromium-headless-shell.");
}

TEST_F(EngineProcessTest, CarriesMessagesBothWays) {
    start("while receive; do say \"got $message\"; done");
    EXPECT_EQ(engine_->send(saying("one")), DevToolsTransport::SendResult::accepted);
    EXPECT_EQ(firstMessage(), "got one");
    EXPECT_EQ(engine_->send(saying("two")), DevToolsTransport::SendResult::accepted);
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 2; }));
    EXPECT_THAT(messages_, ElementsAre("got one", "got two"));
    EXPECT_THAT(log_, ElementsAre());
}

TEST_F(EngineProcessTest, AnEngineThatDiesAtOnceIsStartedAgainAndGetsTheSameMessages) {
    start("receive; [ -e again ] || exit 7\n"
          "say \"again $message\"; while receive; do say \"then $message\"; done");
    engine_->send(saying("one"));
    engine_->send(saying("two"));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 2; }));
    EXPECT_THAT(messages_, ElementsAre("again one", "then two"));
    EXPECT_THAT(closings_, ElementsAre());
    EXPECT_THAT(
        log_,
        ElementsAre("the web engine exited with status 7 before its first message; it is started again"));
}

TEST_F(EngineProcessTest, AnEngineThatAlwaysDiesIsGivenUp) {
    start("exit 7");
    engine_->send(saying("one"));
    std::set<pid_t> started;
    EXPECT_TRUE(runUntil([&] {
        started.insert(engine_->pid());
        return !closings_.empty();
    }));
    EXPECT_THAT(closings_, ElementsAre("the web engine exited with status 7"));
    EXPECT_EQ(engine_->send(saying("two")), DevToolsTransport::SendResult::closed);
    EXPECT_EQ(started.size(), 3u);
}

TEST_F(EngineProcessTest, AnEngineThatDiesLaterIsNotStartedAgain) {
    start("say hello; receive; exec /usr/bin/python3 -c 'import ctypes; ctypes.string_at(0)'");
    EXPECT_EQ(firstMessage(), "hello");
    const pid_t pid = engine_->pid();
    engine_->send(saying("crash"));
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_THAT(closings_, ElementsAre("the web engine was ended by signal 11 (Segmentation fault)"));
    EXPECT_EQ(engine_->pid(), pid);
}

TEST_F(EngineProcessTest, AnEngineThatClosesItsConnectionIsEnded) {
    start("say hello; exec 3<&- 4>&-; sleep 1000");
    EXPECT_EQ(firstMessage(), "hello");
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_THAT(closings_, ElementsAre("the web engine was ended by signal 9 (Killed)"));
}

TEST_F(EngineProcessTest, AFileThatCanNotBeExecutedIsTriedOnce) {
    std::ofstream(directory_.path() / "garbage") << "no program";
    std::filesystem::permissions(directory_.path() / "garbage", std::filesystem::perms::all);
    engine_ = launch({.search = only((directory_.path() / "garbage").string()),
                      .log = [this](const std::string& line) { log_.push_back(line); }},
                     loop_);
    engine_->setCloseHandler([this](const std::string& reason) { closings_.push_back(reason); });
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_THAT(closings_, ElementsAre(StartsWith("the engine can not be executed (Exec format error).")));
    EXPECT_EQ(log_, closings_);
}

TEST_F(EngineProcessTest, TheEngineSeesItsConnectionAndNothingElse) {
    int leaked = ::open("/dev/zero", O_RDONLY); // without close-on-exec, as other code may have it
    start("ls -l /proc/$$/fd >$TMPDIR/listing; say \"$(<$TMPDIR/listing)\"");
    std::string open = firstMessage();
    ::close(leaked);
    EXPECT_THAT(open, HasSubstr(" 0 -> /dev/null\n"));
    EXPECT_THAT(open, HasSubstr(" 1 -> /dev/null\n"));
    EXPECT_THAT(open, HasSubstr(" 2 -> /dev/null\n"));
    EXPECT_THAT(open, HasSubstr(" 3 -> socket:"));
    EXPECT_THAT(open, HasSubstr(" 4 -> socket:"));
    EXPECT_THAT(open, Not(HasSubstr("/dev/zero")));
    EXPECT_THAT(open, Not(HasSubstr("pipe:")));
}

TEST_F(EngineProcessTest, TheEngineStartsWithSignalsAsTheyAreByDefault) {
    auto before = std::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigset_t beforeMask;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &beforeMask);
    start("say \"$(cat /proc/self/status)\"");
    std::string status = firstMessage();
    sigset_t afterMask;
    ::pthread_sigmask(SIG_SETMASK, &beforeMask, &afterMask);
    std::signal(SIGPIPE, before);
    EXPECT_THAT(status, HasSubstr("SigBlk:\t0000000000000000"));
    EXPECT_THAT(status, HasSubstr("SigIgn:\t0000000000000000"));
    EXPECT_THAT(status, HasSubstr("NoNewPrivs:\t1"));
    EXPECT_EQ(::sigismember(&afterMask, SIGUSR1), 1); // ours stay as they were
    EXPECT_EQ(::sigismember(&afterMask, SIGUSR2), 0);
}

TEST_F(EngineProcessTest, TheEngineIsNeverRoot) {
    start("say \"$(id -u) $(id -G) $(umask) $PWD $HOME\"");
    std::string user = std::to_string(::geteuid() == 0 ? 65534 : ::geteuid());
    EXPECT_THAT(firstMessage(), ::testing::StartsWith(user + " "));
    if (::geteuid() == 0) {
        EXPECT_THAT(firstMessage(), ::testing::StartsWith("65534 65534 0077 "));
    }
}

TEST_F(EngineProcessTest, TerminatingLeavesNoDescendant) {
    start("trap '' TERM HUP; sleep 1000 & (sleep 1000 & sleep 1000) & say ready; receive");
    EXPECT_EQ(firstMessage(), "ready");
    pid_t group = engine_->pid();
    EXPECT_GE(livingInGroup(group).size(), 3u);
    engine_->terminate();
    EXPECT_THAT(livingInGroup(group), ElementsAre());
    EXPECT_EQ(::kill(-group, 0), -1); // not even zombies
    EXPECT_EQ(engine_->send(saying("x")), DevToolsTransport::SendResult::closed);
    engine_->terminate();
}

TEST_F(EngineProcessTest, TerminatingRightAfterTheStartLeavesNothing) {
    for (int round = 0; round < 20; ++round) {
        start("sleep 1000");
        pid_t group = engine_->pid();
        engine_.reset();
        EXPECT_EQ(::kill(group, 0), -1);
        EXPECT_THAT(livingInGroup(group), ElementsAre());
    }
}

TEST_F(EngineProcessTest, NoHandlerIsCalledAfterTerminating) {
    start("say one; say two; receive");
    EXPECT_EQ(firstMessage(), "one");
    engine_->terminate();
    loop_.runUntil([] { return false; }, std::chrono::steady_clock::now() + std::chrono::milliseconds(20));
    EXPECT_THAT(messages_, ElementsAre("one"));
    EXPECT_THAT(closings_, ElementsAre());
}

TEST_F(EngineProcessTest, TheCloseHandlerMayDestroyTheEngine) {
    start("say hello; exit 0");
    engine_->setCloseHandler([this](const std::string& reason) {
        engine_.reset();
        closings_.push_back(reason);
    });
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_THAT(closings_, ElementsAre("the web engine exited with status 0"));
}

TEST_F(EngineProcessTest, AClientGetsItsReplyFromTheSecondStart) {
    // {"id": 1, "result": {"start": "second"}}
    start("receive; [ -e again ] || exit 7\n"
          "printf '\\xd8\\x18\\x5a\\0\\0\\0\\x23\\xbf\\x62id\\x01\\x66result"
          "\\xd8\\x18\\x5a\\0\\0\\0\\x0f\\xbf\\x65start\\x66second\\xff\\xff' >&4; receive");
    DevToolsClient client(*engine_, loop_);
    DevToolsReply reply = client.call({}, "Browser.getVersion", {}, patience);
    EXPECT_EQ(reply.result["start"].string(), "second") << reply.errorMessage;
}

// The name that a process gives itself tells the watch what it is.
TEST_F(EngineProcessTest, AnEngineThatLosesItsZygoteIsEnded) {
    start("(exec -a --type=zygote sleep 1000) & say hello; receive; kill $!; while :; do sleep 1000; done");
    EXPECT_EQ(firstMessage(), "hello");
    const pid_t group = engine_->pid();
    EXPECT_TRUE(eventually([&] { return readProcessTree(group).back().type == "zygote"; }));
    bool wasSeen = false; // by the watch, whose timer is an earlier one
    const auto later = loop_.scheduleTimer(2 * EngineWatch::lookInterval, [&] { wasSeen = true; });
    EXPECT_TRUE(runUntil([&] { return wasSeen; }));
    engine_->send(saying("kill it"));
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_THAT(closings_, ElementsAre("the web engine lost the process that starts its others"));
    EXPECT_THAT(livingInGroup(group), ElementsAre());
    EXPECT_FALSE(engine_->exceededMemory());
}

TEST_F(EngineProcessTest, AnEngineWhoseConnectionIsHeldOpenByAnotherProcessIsEnded) {
    start("sleep 1000 & say hello; exit 5");
    EXPECT_EQ(firstMessage(), "hello");
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_THAT(closings_, ElementsAre("the web engine exited with status 5"));
}

TEST_F(EngineProcessTest, AnEngineThatUsesTooMuchMemoryIsEndedAndNotStartedAgain) {
    ::setenv("WEB2PDF_MEMORY_LIMIT", "40", 1);
    start("head -c 60M /dev/zero | tail -n 1 | sleep 1000");
    ::unsetenv("WEB2PDF_MEMORY_LIMIT");
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_THAT(closings_, ElementsAre("the web engine used more memory than it may"));
    EXPECT_TRUE(engine_->exceededMemory());
    EXPECT_EQ(engine_->memoryLimit(), std::size_t{40} << 20);
    EXPECT_THAT(log_, Not(Contains(HasSubstr("it is started again"))));
}

// The starting process is killed without any chance to clean up.
TEST_F(EngineProcessTest, TheEngineDiesWithTheProcessThatStartedIt) {
    std::string script = directory_.addScript("engine", "say ready; while :; do :; done");
    int pipe[2];
    ASSERT_EQ(::pipe2(pipe, O_CLOEXEC), 0);
    pid_t starter = ::fork();
    if (starter == 0) {
        NSRunLoop loop;
        auto engine = launch({.search = only(script), .log = {}}, loop);
        bool ready = false;
        engine->setMessageHandler([&ready](const Json&) { ready = true; });
        loop.runUntil([&ready] { return ready; }, std::chrono::steady_clock::now() + patience);
        pid_t pid = engine->pid();
        (void)!::write(pipe[1], &pid, sizeof pid);
        for (;;) ::pause();
    }
    ::close(pipe[1]);
    pid_t group = 0;
    ASSERT_EQ(::read(pipe[0], &group, sizeof group), static_cast<ssize_t>(sizeof group));
    ::close(pipe[0]);
    EXPECT_EQ(livingInGroup(group).size(), 1u);
    ::kill(starter, SIGKILL);
    ::waitpid(starter, nullptr, 0);
    EXPECT_TRUE(eventually([group] { return livingInGroup(group).empty(); }));
}

} // namespace
} // namespace qrv::engine
