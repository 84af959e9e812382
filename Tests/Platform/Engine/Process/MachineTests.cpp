#include "Platform/Engine/Process/Machine.h"

#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sched.h>

namespace qrv::engine {
namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;

class MachineTest : public ::testing::Test {
protected:
    void write(const std::string& path, const std::string& text) const { root_.write(path, text + "\n"); }

    std::string root() const { return root_.path().string(); }

    TemporaryFolder root_;
};

TEST_F(MachineTest, MemoryIsAvailableAsTheKernelSays) {
    write("proc/meminfo", "MemTotal:  8000000 kB\nMemFree:   100 kB\nMemAvailable:   2048 kB\nCached: 5 kB");
    EXPECT_EQ(availableMemory(root()), 2 * mebibyte);
}

TEST_F(MachineTest, MemoryIsWhatTheGroupHasLeft) {
    write("proc/meminfo", "MemAvailable:   8000000 kB");
    write("proc/self/cgroup", "0::/a/b");
    write("sys/fs/cgroup/a/memory.max", std::to_string(100 * mebibyte));
    write("sys/fs/cgroup/a/memory.current", std::to_string(60 * mebibyte));
    EXPECT_EQ(availableMemory(root()), 40 * mebibyte);
    write("sys/fs/cgroup/a/memory.stat", "anon 5\ninactive_file " + std::to_string(20 * mebibyte));
    EXPECT_EQ(availableMemory(root()), 60 * mebibyte);
    write("sys/fs/cgroup/a/b/memory.max", "max");
    EXPECT_EQ(availableMemory(root()), 60 * mebibyte);
    write("sys/fs/cgroup/a/memory.current", std::to_string(500 * mebibyte));
    EXPECT_EQ(availableMemory(root()), 0u);
}

TEST_F(MachineTest, MemoryOfGroupsOfTheFirstVersion) {
    write("proc/meminfo", "MemAvailable:   8000000 kB");
    write("proc/self/cgroup", "4:memory:/a");
    write("sys/fs/cgroup/memory/a/memory.limit_in_bytes", std::to_string(100 * mebibyte));
    write("sys/fs/cgroup/memory/a/memory.usage_in_bytes", std::to_string(90 * mebibyte));
    write("sys/fs/cgroup/memory/a/memory.stat", "total_inactive_file " + std::to_string(10 * mebibyte));
    EXPECT_EQ(availableMemory(root()), 20 * mebibyte);
    EXPECT_EQ(machineMemory(root()), 100 * mebibyte);
}

TEST_F(MachineTest, ProcessorsAreThoseOfTheProcess) {
    cpu_set_t set;
    ASSERT_EQ(::sched_getaffinity(0, sizeof set, &set), 0);
    EXPECT_EQ(availableProcessors(root()), CPU_COUNT(&set));
}

TEST_F(MachineTest, ProcessorsAreTheGroupsQuota) {
    write("proc/self/cgroup", "0::/a");
    write("sys/fs/cgroup/a/cpu.max", "50000 100000");
    EXPECT_EQ(availableProcessors(root()), 0.5);
    write("sys/fs/cgroup/a/cpu.max", "max 100000");
    EXPECT_GE(availableProcessors(root()), 1);
    write("proc/self/cgroup", "2:cpu,cpuacct:/a");
    write("sys/fs/cgroup/cpu/a/cpu.cfs_quota_us", "25000");
    write("sys/fs/cgroup/cpu/a/cpu.cfs_period_us", "100000");
    EXPECT_EQ(availableProcessors(root()), 0.25);
    write("sys/fs/cgroup/cpu/a/cpu.cfs_quota_us", "-1");
    EXPECT_GE(availableProcessors(root()), 1);
}

TEST_F(MachineTest, WithoutFilesItIsTheMachine) {
    EXPECT_GT(availableMemory(root()), machineMemory(root()));
    EXPECT_GT(availableMemory(), 0u);
    EXPECT_GE(machineMemory(), availableMemory());
    EXPECT_GT(availableProcessors(), 0);
}

} // namespace
} // namespace qrv::engine
