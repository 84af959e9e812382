#include "Platform/Confinement/ConfinedWork.h"

#include "Platform/Confinement/Sanitizer.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace qrv {
namespace {

using testing::MatchesRegex;
using testing::StartsWith;

ConfinedResult run(const std::function<NSData()>& work, const ConfinedLimits& limits = {}) {
    return runConfined([&](std::string&) { return work(); }, limits);
}

std::string failureOf(const std::function<NSData()>& work, const ConfinedLimits& limits = {}) {
    const ConfinedResult result = run(work, limits);
    EXPECT_TRUE(result.data.isNil());
    return result.failure;
}

/// The errno value of a call in the child, or 0.
int errorOf(const std::function<long()>& call) {
    const ConfinedResult result = run([&] { return NSData(std::to_string(call() < 0 ? errno : 0)); });
    EXPECT_EQ(result.failure, "");
    return result.data ? std::stoi(std::string(result.data.bytes())) : -1;
}

/// As long as the kernel lets it.
[[noreturn]] void compute() {
    volatile bool isDone = false;
    while (!isDone) continue;
    std::abort();
}

[[noreturn]] void sleepForEver() {
    int word = 0;
    for (;;) ::syscall(SYS_futex, &word, 0 /* wait */, 0, nullptr, nullptr, 0);
}

/// Uses some of the stack in each step. NOLINTNEXTLINE: without end on purpose
int descend(int depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : descend(depth + 1) + room[0];
}

std::string open() {
    std::string found;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        if (::lseek(descriptor, 0, SEEK_CUR) >= 0 || errno != EBADF)
            found += std::to_string(descriptor) + " ";
    }
    return found;
}

TEST(ConfinedWork, HandsBackWhatWasMade) {
    const ConfinedResult result = run([] { return NSData("made"); });
    EXPECT_EQ(result.data.bytes(), "made");
    EXPECT_EQ(result.failure, "");
    EXPECT_EQ(result.notes, "");
}

TEST(ConfinedWork, DistinguishesNothingFromEmptyBytes) {
    const ConfinedResult empty = run([] { return NSData::data(); });
    EXPECT_FALSE(empty.data.isNil());
    EXPECT_EQ(empty.data.length(), 0u);
    const ConfinedResult nothing = run([] { return NSData(); });
    EXPECT_TRUE(nothing.data.isNil());
    EXPECT_EQ(nothing.failure, "");
}

TEST(ConfinedWork, HandsBackManyBytesAsTheyAre) {
    std::string bytes(100 << 20, '\0');
    for (std::size_t i = 0; i < bytes.size(); i += 4093) bytes[i] = static_cast<char>(i);
    const NSData large(std::move(bytes));
    EXPECT_EQ(run([&] { return large; }).data, large);
}

TEST(ConfinedWork, SeesWhatItCapturesAndChangesNothingOfIt) {
    std::string captured = "before";
    const ConfinedResult result = run([&] {
        captured += " and after";
        return NSData(captured);
    });
    EXPECT_EQ(result.data.bytes(), "before and after");
    EXPECT_EQ(captured, "before");
}

TEST(ConfinedWork, HandsBackNotes) {
    const auto noting = [](std::string& notes) {
        notes = "first\nsecond\n";
        return NSData("made");
    };
    const ConfinedResult result = runConfined(noting, {});
    EXPECT_EQ(result.notes, "first\nsecond\n");
    EXPECT_EQ(result.data.bytes(), "made");
}

TEST(ConfinedWork, CutsLongNotes) {
    const auto noting = [](std::string& notes) {
        notes.assign(10 << 20, 'x');
        return NSData("made");
    };
    const ConfinedResult result = runConfined(noting, {});
    EXPECT_EQ(result.notes, std::string(64 << 10, 'x'));
    EXPECT_EQ(result.data.bytes(), "made");
}

TEST(ConfinedWork, ExceptionsAreFailures) {
    EXPECT_EQ(failureOf([]() -> NSData { throw std::runtime_error("no such page"); }), "threw: no such page");
    EXPECT_EQ(failureOf([]() -> NSData { throw 7; }), "threw: something that is no exception");
}

TEST(ConfinedWork, SignalsAreFailures) {
    EXPECT_EQ(failureOf([]() -> NSData { __builtin_trap(); }), "was ended by signal 4 (Illegal instruction)");
}

TEST(ConfinedWork, AnEarlyExitIsAFailure) {
    EXPECT_EQ(failureOf([]() -> NSData { ::_exit(1); }), "exited with status 1");
}

TEST(ConfinedWork, ProcessorTimeIsLimited) {
    ConfinedLimits limits;
    limits.processorTime = std::chrono::seconds(1);
    EXPECT_EQ(failureOf([]() -> NSData { compute(); }, limits), "needed more than 1 s of processor time");
}

TEST(ConfinedWork, TimeIsLimited) {
    ConfinedLimits limits;
    limits.time = std::chrono::seconds(1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(failureOf([]() -> NSData { sleepForEver(); }, limits), "took longer than 1 s");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

/// As code that has been taken over could.
TEST(ConfinedWork, ClosingTheConnectionGainsNoTime) {
    EXPECT_EQ(failureOf([]() -> NSData {
                  ::close_range(0, ~0U, 0);
                  for (int descriptor = 0; descriptor < 1024; ++descriptor) ::close(descriptor);
                  sleepForEver();
              }),
              "was ended by signal 9 (Killed)");
}

TEST(ConfinedWork, TheResultIsLimited) {
    ConfinedLimits limits;
    limits.result = 3 << 20;
    EXPECT_EQ(run([] { return NSData(std::string(3 << 20, 'x')); }, limits).data.length(), 3u << 20);
    EXPECT_EQ(failureOf([] { return NSData(std::string((3 << 20) + 1, 'x')); }, limits),
              "made more than 3 MiB");
}

/// Limits that programs with a sanitizer do not have.
class UnsanitizedWork : public testing::Test {
protected:
    void SetUp() override {
        if (isSanitized) GTEST_SKIP() << "sanitizers need memory without measure, and files for reports";
    }
};

TEST_F(UnsanitizedWork, MemoryIsLimited) {
    ConfinedLimits limits;
    limits.memory = 64 << 20;
    const auto take = [](std::size_t bytes) {
        const std::vector<char> room(bytes, 'x');
        return NSData(std::string(room.data() + bytes / 2, 1));
    };
    EXPECT_EQ(run([&] { return take(32 << 20); }, limits).data.bytes(), "x");
    EXPECT_EQ(failureOf([&] { return take(80 << 20); }, limits), "needed more than 64 MiB of memory");
}

TEST_F(UnsanitizedWork, AFailedAllocationCannotBeHidden) {
    const auto hide = []() {
        try {
            return NSData(std::string(std::size_t{1} << 40, 'x'));
        } catch (const std::bad_alloc&) {
            return NSData("recovered");
        }
    };
    EXPECT_EQ(failureOf(hide), "needed more than 512 MiB of memory");
}

/// What this process holds already is not counted.
TEST_F(UnsanitizedWork, MemoryIsLimitedBesidesWhatWasThereBefore) {
    ConfinedLimits limits;
    limits.memory = 64 << 20;
    const std::vector<char> before(256 << 20, 'x');
    EXPECT_EQ(run([&] { return NSData(std::string(before.data() + 7, 1 << 20)); }, limits).data.length(),
              1u << 20);
}

TEST(ConfinedWork, ADeepRecursionEndsOnlyTheChild) {
    EXPECT_EQ(failureOf([] { return NSData(std::to_string(descend(0))); }),
              "was ended by signal 11 (Segmentation fault)");
}

TEST_F(UnsanitizedWork, CannotOpenFiles) {
    EXPECT_EQ(errorOf([] { return ::open("/dev/null", O_RDONLY); }), EPERM);
}

TEST_F(UnsanitizedWork, CannotReachAnythingElse) {
    const pid_t parent = ::getpid();
    EXPECT_EQ(errorOf([] { return ::socket(AF_UNIX, SOCK_STREAM, 0); }), EPERM);
    EXPECT_EQ(errorOf([&] { return ::kill(parent, 0); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::syscall(SYS_fork); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::execl("/bin/true", "true", nullptr); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::mkdir("/tmp/made-by-confined-work", 0700); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::unlink("/tmp/made-by-confined-work"); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::prctl(PR_SET_PDEATHSIG, 0, 0, 0, 0); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::syscall(SYS_ptrace, 0, 0, 0, 0); }), EPERM);
}

/// Also where they are above the ones of this process.
TEST(ConfinedWork, HasNoDescriptorsButItsOwn) {
    for (const int wanted : {3, 500}) {
        const int kept = ::fcntl(STDERR_FILENO, F_DUPFD, wanted);
        EXPECT_EQ(errorOf([&] { return ::write(kept, "x", 1); }), EBADF) << wanted;
        EXPECT_EQ(errorOf([&] { return ::write(STDERR_FILENO, "x", 1); }), EBADF);
        ::close(kept);
    }
}

TEST(ConfinedWork, LeavesNoDescriptorAndNoProcess) {
    const std::string before = open();
    EXPECT_EQ(run([] { return NSData("made"); }).failure, "");
    EXPECT_EQ(failureOf([]() -> NSData { ::_exit(1); }), "exited with status 1");
    EXPECT_EQ(open(), before);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

/// As after a start by a program that ignores the ends of its children.
TEST(ConfinedWork, AnIgnoredEndOfChildrenIsAFailureAtWorst) {
    const auto before = ::signal(SIGCHLD, SIG_IGN);
    const ConfinedResult result = run([] { return NSData("made"); });
    ::signal(SIGCHLD, before);
    EXPECT_TRUE(result.data.isNil());
    EXPECT_THAT(result.failure, StartsWith("was ended by signal"));
}

/// Inside, the system refuses everything that a further child takes.
TEST_F(UnsanitizedWork, WhatTheSystemRefusesIsAFailure) {
    const ConfinedResult result = run([] { return NSData(run([] { return NSData("made"); }).failure); });
    EXPECT_EQ(result.data.bytes(), "could not be done: making room for the result: Operation not permitted");
}

} // namespace
} // namespace qrv
