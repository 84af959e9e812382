// The engine that is installed, started and ended for real.

#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string contents(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

class InstalledEngineTest : public ::testing::Test {
protected:
    void SetUp() override {
        engine_ = launch({.search = only(installedEngine()),
                          .log = [this](const std::string& line) { log_ += line + "\n"; }},
                         loop_);
        client_ = std::make_unique<DevToolsClient>(*engine_, loop_);
    }

    NSRunLoop loop_;
    std::string log_;
    std::unique_ptr<EngineProcess> engine_;
    std::unique_ptr<DevToolsClient> client_;
};

TEST_F(InstalledEngineTest, AnswersWithItsVersion) {
    DevToolsReply reply = client_->call({}, "Browser.getVersion", {}, patience);
    ASSERT_TRUE(reply.ok()) << reply.errorMessage;
    EXPECT_EQ(reply.result["protocolVersion"].string(), "1.3");
    EXPECT_EQ(log_, "");
}

TEST_F(InstalledEngineTest, RefusesAnUnknownCommand) {
    DevToolsReply reply = client_->call({}, "No.such", {}, patience);
    EXPECT_EQ(reply.status, DevToolsReply::Status::error);
    EXPECT_NE(reply.errorCode, 0);
    EXPECT_NE(reply.errorMessage, "");
}

TEST_F(InstalledEngineTest, RendersWithItsOwnSandboxOn) {
    std::string session = attachToPage(*client_);
    EXPECT_EQ(evaluate(*client_, session, "6 * 7").integer(), 42);
    int filtered = 0;
    for (pid_t pid : livingInGroup(engine_->pid())) {
        std::string process = "/proc/" + std::to_string(pid);
        std::string status = contents(process + "/status");
        EXPECT_THAT(status, HasSubstr("NoNewPrivs:\t1"));
        if (contents(process + "/cmdline").find("--type=renderer") == std::string::npos) continue;
        EXPECT_THAT(status, HasSubstr("Seccomp:\t2"));
        ++filtered;
    }
    EXPECT_GE(filtered, 1);
}

TEST_F(InstalledEngineTest, HasANetworkNamespaceOfItsOwn) {
    ASSERT_TRUE(client_->call({}, "Browser.getVersion", {}, patience).ok());
    auto theirs = std::filesystem::read_symlink("/proc/" + std::to_string(engine_->pid()) + "/ns/net");
    EXPECT_NE(theirs, std::filesystem::read_symlink("/proc/self/ns/net"));
}

TEST_F(InstalledEngineTest, TakesAndGivesLongMessages) {
    std::string session = attachToPage(*client_);
    std::string text(3'000'000, 'a');
    EXPECT_EQ(evaluate(*client_, session, "'" + text + "'.length").integer(), 3'000'000);
    EXPECT_EQ(evaluate(*client_, session, "'b'.repeat(3000000)").stringView().size(), 3'000'000u);
}

TEST_F(InstalledEngineTest, StringsWithHalfSurrogatePairsArrive) {
    std::string session = attachToPage(*client_);
    EXPECT_EQ(evaluate(*client_, session, "'a\\ud83db'").string(), "a\xEF\xBF\xBD"
                                                                   "b");
}

TEST_F(InstalledEngineTest, NothingIsLeftAfterTerminating) {
    ASSERT_TRUE(client_->call({}, "Browser.getVersion", {}, patience).ok());
    pid_t group = engine_->pid();
    EXPECT_GE(livingInGroup(group).size(), 2u);
    engine_->terminate();
    EXPECT_THAT(livingInGroup(group), ElementsAre());
    EXPECT_EQ(::kill(-group, 0), -1); // not even zombies
}

TEST_F(InstalledEngineTest, ItsDeathEndsTheConnectionWithAReason) {
    ASSERT_TRUE(client_->call({}, "Browser.getVersion", {}, patience).ok());
    ::kill(engine_->pid(), SIGKILL);
    DevToolsReply reply = client_->call({}, "Browser.getVersion", {}, patience);
    EXPECT_EQ(reply.status, DevToolsReply::Status::closed);
    EXPECT_EQ(reply.errorMessage, "the web engine was ended by signal 9 (Killed)");
}

// A process that starts the engine, has a page loop for ever, and then ends in some rude way.
class RudeEndTest : public ::testing::TestWithParam<const char*> {};

TEST_P(RudeEndTest, LeavesNothing) {
    int pipe[2];
    ASSERT_EQ(::pipe2(pipe, O_CLOEXEC), 0);
    pid_t starter = ::fork();
    if (starter == 0) {
        NSRunLoop& loop = NSRunLoop::currentRunLoop();
        auto engine = launch({.search = only(installedEngine()), .log = {}}, loop);
        DevToolsClient client(*engine, loop);
        std::string session = attachToPage(client);
        evaluate(client, session, "1");
        client.send(session, "Runtime.evaluate", Json::object({{"expression", "for (;;);"}}));
        client.call({}, "Browser.getVersion", {}, patience);
        pid_t pid = engine->pid();
        (void)!::write(pipe[1], &pid, sizeof pid);
        if (std::string(GetParam()) == "exit") std::_Exit(0); // no destructor runs
        for (;;) ::pause();
    }
    ::close(pipe[1]);
    pid_t group = 0;
    ASSERT_EQ(::read(pipe[0], &group, sizeof group), static_cast<ssize_t>(sizeof group));
    ::close(pipe[0]);
    if (std::string(GetParam()) == "kill") {
        EXPECT_GE(livingInGroup(group).size(), 2u);
        ::kill(starter, SIGKILL);
    }
    ::waitpid(starter, nullptr, 0);
    EXPECT_TRUE(eventually([group] { return livingInGroup(group).empty(); }));
}

INSTANTIATE_TEST_SUITE_P(InstalledEngineTest, RudeEndTest, ::testing::Values("kill", "exit"),
                         [](const auto& instance) { return std::string(instance.param); });

} // namespace
} // namespace qrv::engine
