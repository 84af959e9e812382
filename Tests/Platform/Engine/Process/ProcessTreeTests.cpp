#include "Platform/Engine/Process/ProcessTree.h"

#include "Tests/Platform/Engine/Process/ProcessFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;

std::vector<pid_t> numbersOf(const std::vector<ProcessState>& tree) {
    std::vector<pid_t> numbers;
    for (const ProcessState& process : tree) numbers.push_back(process.pid);
    return numbers;
}

void addFamily(ProcessFolder& folder) {
    folder.add(9, 1, {});
    folder.add(10, 9, {});
    folder.add(20, 10, {.commandLine = std::string("engine\0--type=zygote\0--more", 27)});
    folder.add(21, 10, {});
    folder.add(30, 20, {.commandLine = "engine --type=renderer --more"});
    folder.add(40, 1, {});
}

TEST(ProcessTreeTest, HasTheDescendantsAndNobodyElse) {
    ProcessFolder folder;
    addFamily(folder);
    EXPECT_THAT(numbersOf(readProcessTree(10, folder.path())), ElementsAre(10, 20, 21, 30));
}

TEST(ProcessTreeTest, HasTheDescendantsWhereTheKernelDoesNotListThem) {
    ProcessFolder folder(ProcessFolder::Lists::none);
    addFamily(folder);
    EXPECT_THAT(numbersOf(readProcessTree(10, folder.path())),
                ::testing::UnorderedElementsAre(10, 20, 21, 30));
}

TEST(ProcessTreeTest, TellsTypesApart) {
    ProcessFolder folder;
    addFamily(folder);
    const auto tree = readProcessTree(10, folder.path());
    ASSERT_EQ(tree.size(), 4u);
    EXPECT_EQ(tree[0].type, "");
    EXPECT_EQ(tree[1].type, "zygote");
    EXPECT_EQ(tree[1].parent, 10);
    EXPECT_EQ(tree[3].type, "renderer");
    EXPECT_EQ(tree[3].parent, 20);
}

TEST(ProcessTreeTest, MemoryIsWhatNoFileHolds) {
    ProcessFolder folder;
    folder.add(10, 1, {.anonymousKiB = 5, .sharedKiB = 2});
    EXPECT_EQ(readProcessTree(10, folder.path()).front().memory, 7u << 10);
}

TEST(ProcessTreeTest, TheDeadAreNotAlive) {
    ProcessFolder folder;
    folder.add(10, 1, {.state = "Z (zombie)"});
    folder.add(20, 10, {});
    folder.remove(20);
    const auto tree = readProcessTree(10, folder.path());
    ASSERT_EQ(tree.size(), 2u);
    EXPECT_FALSE(tree[0].isAlive);
    EXPECT_FALSE(tree[1].isAlive);
}

TEST(ProcessTreeTest, ReadsTheSystemsOwnFolder) {
    constexpr std::size_t much = std::size_t{64} << 20;
    const std::string bytes(much, 'x');
    pid_t child = -1;
    std::thread([&child] {
        child = ::fork(); // the child of a thread that is not the first
        if (child == 0)
            for (;;) ::pause();
    }).join();
    const auto tree = readProcessTree(::getpid());
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_GE(tree.front().memory, much);
    EXPECT_TRUE(tree.front().isAlive);
    EXPECT_THAT(numbersOf(tree), ::testing::Contains(child));
}

} // namespace
} // namespace qrv::engine
