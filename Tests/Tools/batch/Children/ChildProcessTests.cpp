#include "Source/Tools/batch/Children/ChildProcess.h"

#include <gtest/gtest.h>
#include <thread>

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv::batch {
namespace {

using namespace std::chrono_literals;

ChildCommand shell(const std::string& script) {
    ChildCommand command;
    command.program = "/bin/sh";
    command.arguments = {"-c", script};
    return command;
}

/// While there is one, orphans below this process are its children: nobody knows when another would reap
/// them.
class Orphanage {
public:
    Orphanage() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }

    Orphanage(const Orphanage&) = delete;
    Orphanage& operator=(const Orphanage&) = delete;

    ~Orphanage() { ::prctl(PR_SET_CHILD_SUBREAPER, 0); }

    /// Waits for an orphan's end. One that is gone already was reaped by its parent.
    static bool endsBy(int signal, pid_t orphan) {
        int status = 0;
        if (::waitpid(orphan, &status, 0) != orphan) return ::kill(orphan, 0) != 0;
        return WIFSIGNALED(status) && WTERMSIG(status) == signal;
    }
};

TEST(ChildProcess, TellsWhatItWroteAndHowItEnded) {
    const ChildEnd end = runChild(shell("echo out; echo err >&2; exit 3"));
    EXPECT_EQ(end.output, "out\n");
    EXPECT_EQ(end.errors, "err\n");
    EXPECT_EQ(end.kind, ChildEnd::Kind::ended);
    EXPECT_FALSE(end.succeeded());
    EXPECT_EQ(end.text(), "exited with status 3");
    EXPECT_TRUE(runChild(shell("true")).succeeded());
    EXPECT_EQ(runChild(shell("kill -9 $$")).text(), "was ended by signal 9 (Killed)");
}

TEST(ChildProcess, TakesArgumentsOfAnyBytes) {
    ChildCommand command = shell("printf '%s|' \"$@\"");
    command.arguments.insert(command.arguments.end(), {"sh", "", "a b", "\xff\n*", "-n"});
    EXPECT_EQ(runChild(command).output, "|a b|\xff\n*|-n|");
}

TEST(ChildProcess, ReadsNothing) {
    EXPECT_EQ(runChild(shell("cat; echo end")).output, "end\n");
}

TEST(ChildProcess, HasVariablesBesidesOursOrInTheirPlace) {
    ChildCommand command =
        shell("printf '%s|%s|%s|%s' \"$HOME\" \"${OF_TEST-none}\" \"${PATH:+has path}\" \"${GONE-none}\"");
    ::setenv("GONE", "x", 1);
    command.variables = {{"HOME", "/x=y"}, {"OF_TEST", ""}, {"GONE", std::nullopt}};
    EXPECT_EQ(runChild(command).output, "/x=y||has path|none");
    ::unsetenv("GONE");
}

TEST(ChildProcess, HasNoDescriptorsOfOurs) {
    EXPECT_EQ(runChild(shell("ls /proc/self/fd | tr '\\n' ' '")).output, "0 1 2 3 ");
}

TEST(ChildProcess, HasDefaultSignals) {
    struct sigaction ours {};

    ::sigaction(SIGPIPE, nullptr, &ours);
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(runChild(shell("grep SigIgn /proc/$$/status")).output, "SigIgn:\t0000000000000000\n");
    ::sigaction(SIGPIPE, &ours, nullptr);
}

TEST(ChildProcess, OutputBeyondTheLimitIsDropped) {
    ChildCommand command = shell("yes | head -c 300000; yes | head -c 300000 >&2; echo end >&2");
    command.mostOutput = 100'000;
    const ChildEnd end = runChild(command);
    EXPECT_TRUE(end.succeeded());
    EXPECT_EQ(end.output.size(), 100'000u);
    EXPECT_EQ(end.errors.size(), 100'000u);
}

TEST(ChildProcess, IsKilledWithItsGroupWhenItsTimeIsOver) {
    const Orphanage orphanage;
    ChildCommand command = shell("sleep 600 & echo $!; sleep 600");
    command.timeLimit = 300ms;
    const ChildEnd end = runChild(command);
    EXPECT_EQ(end.kind, ChildEnd::Kind::timedOut);
    EXPECT_TRUE(orphanage.endsBy(SIGKILL, std::stoi(end.output)));
}

TEST(ChildProcess, IsKilledWhenThatIsAskedFor) {
    std::stop_source source;
    ChildEnd end{};
    std::jthread waiting([&] { end = runChild(shell("sleep 600"), source.get_token()); });
    std::this_thread::sleep_for(100ms); // before or after its start: both must end it
    source.request_stop();
    waiting.join();
    EXPECT_EQ(end.kind, ChildEnd::Kind::stopped);
    EXPECT_EQ(runChild(shell("sleep 600"), source.get_token()).kind, ChildEnd::Kind::stopped);
}

TEST(ChildProcess, WhatIsLeftOfItsGroupIsKilled) {
    const Orphanage orphanage;
    const ChildEnd end = runChild(shell("sleep 600 & echo $!"));
    EXPECT_TRUE(end.succeeded());
    EXPECT_TRUE(orphanage.endsBy(SIGKILL, std::stoi(end.output)));
}

TEST(ChildProcess, WhatLeavesItsGroupIsNotWaitedFor) {
    const Orphanage orphanage;
    // It ends when the other one says that it has left.
    const ChildEnd end =
        runChild(shell("trap 'exit 0' USR1; "
                       "setsid sh -c \"echo \\$\\$; kill -USR1 $$; exec sleep 600\" & wait"));
    EXPECT_TRUE(end.succeeded());
    const pid_t left = std::stoi(end.output);
    EXPECT_EQ(::kill(left, SIGTERM), 0);
    EXPECT_TRUE(orphanage.endsBy(SIGTERM, left));
}

TEST(ChildProcess, MemoryHasALimit) {
    ChildCommand command;
    command.program = "/usr/bin/python3";
    command.arguments = {"-c", "bytearray(1 << 30)"};
    EXPECT_TRUE(runChild(command).succeeded());
    command.memoryLimit = std::size_t{512} << 20;
    EXPECT_NE(runChild(command).errors.find("MemoryError"), std::string::npos);
}

TEST(ChildProcess, AProgramThatIsNotThereIsTold) {
    ChildCommand command;
    command.program = "/nowhere/program";
    EXPECT_EQ(runChild(command).text(), "could not be started: No such file or directory");
    command.program = "/etc/passwd";
    EXPECT_EQ(runChild(command).text(), "could not be started: Permission denied");
    command.program = "/etc";
    EXPECT_EQ(runChild(command).text(), "could not be started: Permission denied");
}

TEST(ChildProcess, ManyRunAtOnce) {
    std::vector<std::jthread> threads;
    std::vector<std::string> outputs(40);
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        threads.emplace_back(
            [&outputs, i] { outputs[i] = runChild(shell("echo " + std::to_string(i))).output; });
    }
    threads.clear();
    for (std::size_t i = 0; i < outputs.size(); ++i) EXPECT_EQ(outputs[i], std::to_string(i) + "\n");
}

} // namespace
} // namespace qrv::batch
