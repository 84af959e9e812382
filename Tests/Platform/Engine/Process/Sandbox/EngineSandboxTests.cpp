#include "Platform/Engine/Process/Sandbox/EngineSandbox.h"

#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <arpa/inet.h>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

// What is forbidden for good is tried in child processes; their results are the numbers of the checks that
// failed.

namespace qrv::engine {
namespace {

// A server on this machine's loopback that any process with a network can reach.
class LocalListener {
public:
    LocalListener() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(::bind(socket_.get(), reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(::listen(socket_.get(), 16), 0);
        EXPECT_EQ(::getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
        address_ = address;
    }

    std::string port() const { return std::to_string(ntohs(address_.sin_port)); }

    bool canBeReachedFromHere() const {
        FileDescriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        return client &&
               ::connect(client.get(), reinterpret_cast<const sockaddr*>(&address_), sizeof address_) == 0;
    }

    int connections() const {
        int count = 0;
        while (FileDescriptor(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC))) ++count;
        return count;
    }

private:
    FileDescriptor socket_;
    sockaddr_in address_;
};

// Becomes root of a user namespace in which there is nobody else.
void becomeOnlyRoot() {
    std::string user = std::to_string(::geteuid());
    std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER) != 0) throw std::runtime_error("no user namespace");
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " + user + " 1\n";
    std::ofstream("/proc/self/gid_map") << "0 " + group + " 1\n";
    if (::geteuid() != 0) throw std::runtime_error("root is not mapped");
}

class EngineSandboxTest : public ::testing::Test {
protected:
    EngineSandboxTest() {
        // The installed engine without the switch that keeps it from trying: only the kernel stands in the
        // way.
        unguarded_ =
            directory_.addScript("unguarded-headless", "for argument; do\n"
                                                       "  case $argument in --host-resolver-rules*) ;;\n"
                                                       "    *) arguments+=(\"$argument\") ;; esac\n"
                                                       "done\n"
                                                       "exec '" +
                                                           installedEngine() + "' \"${arguments[@]}\"");
        prober_ = directory_.addScript("prober", "exec 2>/dev/null\n"
                                                 "if exec 5<>/dev/tcp/127.0.0.1/" +
                                                     listener_.port() +
                                                     "; then say reached; else say barred; fi; receive");
    }

    EngineOptions options(const std::string& executable) {
        return {.search = only(executable), .log = [this](const std::string& line) { log_ += line + "\n"; }};
    }

    // Whether a process in the engine's place gets through to the listener. Zero when it is barred.
    int probe() { return firstWordsOf(prober_) == "barred" ? 0 : 1; }

    // The first message of the program, or why none came.
    std::string firstWordsOf(const std::string& program) {
        NSRunLoop loop;
        auto engine = launch(options(program), loop);
        std::string words;
        engine->setMessageHandler([&words](const Json& message) { words = said(message); });
        engine->setCloseHandler([&words](const std::string& reason) { words = reason; });
        loop.runUntil([&words] { return !words.empty(); }, std::chrono::steady_clock::now() + patience);
        return words;
    }

    // Has a page of the real engine try everything; zero when it ran and was barred.
    int browse() {
        NSRunLoop loop;
        auto engine = launch(options(unguarded_), loop);
        DevToolsClient client(*engine, loop);
        Json outcome = evaluate(client, attachToPage(client), attempts());
        return outcome.string() == "fetch failed, socket failed, image failed" ? 0 : 1;
    }

    std::string attempts() const {
        std::string address = "//127.0.0.1:" + listener_.port() + "/";
        return "Promise.all(["
               "fetch('http:" +
               address +
               "', {mode: 'no-cors'}).then(() => 'fetch reached', () => 'fetch failed'),"
               "new Promise(done => { const socket = new WebSocket('ws:" +
               address +
               "');"
               "  socket.onopen = () => done('socket reached'); socket.onerror = () => done('socket "
               "failed'); }),"
               "new Promise(done => { const image = new Image(); image.onload = () => done('image reached');"
               "  image.onerror = () => done('image failed'); image.src = 'http:" +
               address +
               "'; })"
               "]).then(all => all.join(', '))";
    }

    int logHas(const std::string& text) const {
        if (log_.find(text) != std::string::npos) return 0;
        std::fprintf(stderr, "the log is: %s\n", log_.c_str());
        return 2;
    }

    LocalListener listener_;
    OpenDirectory directory_;
    std::string unguarded_;
    std::string prober_;
    std::string log_;
};

TEST_F(EngineSandboxTest, NothingInTheEnginesPlaceReachesTheLoopback) {
    ASSERT_TRUE(listener_.canBeReachedFromHere());
    EXPECT_EQ(listener_.connections(), 1);
    EXPECT_EQ(probe(), 0);
    EXPECT_EQ(listener_.connections(), 0);
    EXPECT_EQ(log_, "");
}

TEST_F(EngineSandboxTest, APageReachesNothingOnTheLoopback) {
    ASSERT_TRUE(listener_.canBeReachedFromHere());
    EXPECT_EQ(listener_.connections(), 1);
    EXPECT_EQ(browse(), 0);
    EXPECT_EQ(listener_.connections(), 0);
    EXPECT_EQ(log_, "");
}

TEST_F(EngineSandboxTest, AnOrdinaryUserIsServedLikewise) {
    EXPECT_EQ(inChildProcess([this] {
                  becomeOrdinaryUser();
                  return probe() + browse() + (log_.empty() ? 0 : 10);
              }),
              0);
    EXPECT_EQ(listener_.connections(), 0);
}

TEST_F(EngineSandboxTest, WithoutAnyNamespaceAFilterBarsTheNetworkAndTheEngineRunsWithoutItsSandbox) {
    EXPECT_EQ(inChildProcess([this] {
                  refuseNamespaces(Refused::allNamespaces);
                  return probe() + browse() + logHas("no namespaces of its own for the engine") +
                         logHas("the engine's own sandbox can not work here");
              }),
              0);
    EXPECT_EQ(listener_.connections(), 0);
}

TEST_F(EngineSandboxTest, AnOrdinaryUserWithoutNamespacesIsBarredByAFilterToo) {
    EXPECT_EQ(inChildProcess([this] {
                  becomeOrdinaryUser();
                  refuseNamespaces(Refused::allNamespaces);
                  return probe() + browse() + logHas("no namespaces of its own for the engine") +
                         logHas("the engine's own sandbox can not work here");
              }),
              0);
    EXPECT_EQ(listener_.connections(), 0);
}

TEST_F(EngineSandboxTest, WithoutUserNamespacesTheNetworkIsBarredAllTheSame) {
    EXPECT_EQ(inChildProcess([this] {
                  refuseNamespaces(Refused::userNamespaces);
                  return probe() + browse() + logHas("the engine's own sandbox can not work here");
              }),
              0);
    EXPECT_EQ(listener_.connections(), 0);
}

TEST_F(EngineSandboxTest, WhereThereIsOnlyRootTheEngineIsSomebodyElseInAnotherNamespace) {
    std::string script = directory_.addScript("whoami", "say \"$(id -u)\"; receive");
    EXPECT_EQ(inChildProcess([this, &script] {
                  becomeOnlyRoot();
                  return (firstWordsOf(script) == "65534" ? 0 : 4) + probe() + browse() +
                         (log_.empty() ? 0 : 10);
              }),
              0);
    EXPECT_EQ(listener_.connections(), 0);
}

TEST_F(EngineSandboxTest, TheEngineNeverRunsAsRoot) {
    std::string script = directory_.addScript("whoami", "say \"$(id -u)\"; receive");
    EXPECT_EQ(inChildProcess([this, &script] {
                  becomeOnlyRoot();
                  refuseNamespaces(Refused::allNamespaces);
                  const std::string text = "the engine can not be started without the rights of root";
                  return (firstWordsOf(script).starts_with(text) ? 0 : 4) + logHas(text);
              }),
              0);
}

TEST_F(EngineSandboxTest, AnEngineWhoseSandboxIsRequiredDoesNotRunWithoutIt) {
    EXPECT_EQ(inChildProcess([this] {
                  refuseNamespaces(Refused::userNamespaces);
                  ::setenv("WEB2PDF_REQUIRE_SANDBOX", "1", 1);
                  const std::string text =
                      "the engine's own sandbox can not work here, and WEB2PDF_REQUIRE_SANDBOX is set";
                  return (firstWordsOf(installedEngine()).starts_with(text) ? 0 : 4) + logHas(text);
              }),
              0);
}

TEST_F(EngineSandboxTest, ARequiredSandboxThatWorksChangesNothing) {
    EXPECT_EQ(inChildProcess([this] {
                  ::setenv("WEB2PDF_REQUIRE_SANDBOX", "1", 1);
                  return browse() + (log_.empty() ? 0 : 2);
              }),
              0);
}

TEST_F(EngineSandboxTest, EachStepIsLoggedOnce) {
    EXPECT_EQ(inChildProcess([this] {
                  refuseNamespaces(Refused::allNamespaces);
                  const std::string script = directory_.addScript("dying", "exit 1"); // takes three starts
                  int failed = firstWordsOf(script).find("status 1") == std::string::npos ? 8 : 0;
                  std::string text = "no namespaces of its own for the engine";
                  return failed + (log_.find(text) == log_.rfind(text) ? 0 : 4) + logHas(text);
              }),
              0);
}

TEST_F(EngineSandboxTest, WhereOnlyItsRootFolderIsRefusedTheEngineRunsWithoutItsSandbox) {
    EXPECT_EQ(inChildProcess([this] {
                  refuseCall(SYS_chroot);
                  return probe() + browse() + logHas("gets no root folder of its own") +
                         logHas("the engine's own sandbox can not work here");
              }),
              0);
    EXPECT_EQ(listener_.connections(), 0);
}

TEST_F(EngineSandboxTest, AnOrdinaryUsersEngineDoesSoLikewise) {
    EXPECT_EQ(inChildProcess([this] {
                  becomeOrdinaryUser();
                  refuseCall(SYS_chroot);
                  return browse() + logHas("gets no root folder of its own");
              }),
              0);
}

TEST_F(EngineSandboxTest, WhereSomethingIsRefusedTheEnginesSandboxIsTriedOutBeforeItsFirstStart) {
    EXPECT_EQ(inChildProcess([this] {
                  refuseNamespaces(Refused::allNamespaces);
                  return browse() + (log_.find("is started again") == std::string::npos ? 0 : 4);
              }),
              0);
}

} // namespace
} // namespace qrv::engine
