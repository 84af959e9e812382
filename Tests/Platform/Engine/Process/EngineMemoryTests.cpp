#include "Platform/Engine/Process/EngineMemory.h"

#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

class EngineMemoryTest : public ::testing::Test {
protected:
    ~EngineMemoryTest() override { ::unsetenv("WEB2PDF_MEMORY_LIMIT"); }

    void write(const std::string& path, const std::string& text) const {
        const auto file = root_.path() / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text << "\n";
    }

    std::size_t limit() {
        return engineMemoryLimit([this](const std::string& line) { log_.push_back(line); },
                                 root_.path().string());
    }

    std::size_t chosen(const char* text) {
        ::setenv("WEB2PDF_MEMORY_LIMIT", text, 1);
        return limit();
    }

    static std::size_t halfOfTheMachine() {
        return static_cast<std::size_t>(::sysconf(_SC_PHYS_PAGES)) *
               static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) / 2;
    }

    OpenDirectory root_;
    std::vector<std::string> log_;
};

TEST_F(EngineMemoryTest, TheChosenLimitIsInMebibytes) {
    EXPECT_EQ(chosen("300"), 300 * mebibyte);
    EXPECT_EQ(chosen("1"), mebibyte);
    EXPECT_GE(chosen("18446744073709551615"), std::size_t{1} << 63);
    EXPECT_THAT(log_, ElementsAre());
}

TEST_F(EngineMemoryTest, WhatIsNoPositiveNumberDoesNotCount) {
    for (const char* text : {"", "0", "-5", "+5", "300M", " 300", "1.5", "99999999999999999999999"}) {
        EXPECT_EQ(chosen(text), halfOfTheMachine()) << text;
        EXPECT_THAT(log_, ElementsAre(std::string("WEB2PDF_MEMORY_LIMIT is no positive number and does not "
                                                  "count: ") +
                                      text));
        log_.clear();
    }
}

TEST_F(EngineMemoryTest, HalfOfTheMachineWithoutGroups) {
    EXPECT_EQ(limit(), halfOfTheMachine());
}

TEST_F(EngineMemoryTest, HalfOfTheGroupsLimit) {
    write("proc/self/cgroup", "0::/a/b");
    write("sys/fs/cgroup/a/b/memory.max", std::to_string(64 * mebibyte));
    EXPECT_EQ(limit(), 32 * mebibyte);
}

TEST_F(EngineMemoryTest, GroupsAroundItCountAsWell) {
    write("proc/self/cgroup", "0::/a/b");
    write("sys/fs/cgroup/a/b/memory.max", "max");
    write("sys/fs/cgroup/a/memory.max", std::to_string(48 * mebibyte));
    EXPECT_EQ(limit(), 24 * mebibyte);
    write("sys/fs/cgroup/memory.max", std::to_string(16 * mebibyte));
    EXPECT_EQ(limit(), 8 * mebibyte);
}

TEST_F(EngineMemoryTest, GroupsOfTheFirstVersionCountAsWell) {
    write("proc/self/cgroup", "5:devices:/a\n4:hugetlb,memory:/a/b\n0::/");
    write("sys/fs/cgroup/memory/a/b/memory.limit_in_bytes", "9223372036854771712");
    write("sys/fs/cgroup/memory/memory.limit_in_bytes", std::to_string(20 * mebibyte));
    EXPECT_EQ(limit(), 10 * mebibyte);
}

TEST_F(EngineMemoryTest, NonsenseInTheFilesDoesNotCount) {
    write("proc/self/cgroup", "nonsense\n0:\n0::relative\n:::");
    write("sys/fs/cgroup/memory.max", "many");
    EXPECT_EQ(limit(), halfOfTheMachine());
}

TEST_F(EngineMemoryTest, AProcessCannotTakeFarMore) {
    EXPECT_EQ(inChildProcess([] {
                  limitOwnMemory(300 * mebibyte);
                  rlimit own{};
                  ::getrlimit(RLIMIT_DATA, &own);
                  return own.rlim_cur == 1324 * mebibyte && own.rlim_max == own.rlim_cur ? 0 : 1;
              }),
              0);
}

TEST_F(EngineMemoryTest, AStricterLimitStays) {
    EXPECT_EQ(inChildProcess([] {
                  const rlimit strict{std::size_t{1} << 30, std::size_t{1} << 30};
                  ::setrlimit(RLIMIT_DATA, &strict);
                  limitOwnMemory(~std::size_t{0});
                  rlimit own{};
                  ::getrlimit(RLIMIT_DATA, &own);
                  return own.rlim_cur == strict.rlim_cur && own.rlim_max == strict.rlim_max ? 0 : 1;
              }),
              0);
}

} // namespace
} // namespace qrv::engine
