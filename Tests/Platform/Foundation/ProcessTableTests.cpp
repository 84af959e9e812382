#include "Platform/Foundation/ProcessTable.h"

#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <unistd.h>

namespace qrv {

using testing::Contains;
using testing::ElementsAre;

namespace {

class ProcessTable : public testing::Test {
protected:
    ProcessTable() { setProcessFolderForTesting(folder.path().string()); }

    ~ProcessTable() override { setProcessFolderForTesting(); }

    void addProcess(const std::string& identifier, int realUser, const std::string& name,
                    const std::string& executable = {}) {
        folder.write(identifier + "/status", "Name:\t" + name + "\nState:\tS (sleeping)\nUid:\t" +
                                                 std::to_string(realUser) + "\t0\t0\t0\n");
        folder.write(identifier + "/comm", name + "\n");
        if (!executable.empty())
            symlink(executable.c_str(), (folder.path().string() + "/" + identifier + "/exe").c_str());
    }

    std::vector<std::string> namesOf(uid_t user) {
        std::optional<std::vector<std::string>> names;
        EXPECT_EQ(readProcessTable(user, names), 0);
        return names.value_or(std::vector<std::string>{"(none)"});
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(ProcessTable, HoldsTheProcessesOfTheRealUserOnlyInTheOrderOfIdentifiers) {
    addProcess("20", 7, "second");
    addProcess("3", 7, "first");
    addProcess("100", 7, "third");
    addProcess("4", 0, "root");
    EXPECT_THAT(namesOf(7), ElementsAre("first", "second", "third"));
    EXPECT_THAT(namesOf(0), ElementsAre("root"));
    EXPECT_THAT(namesOf(8), ElementsAre());
}

TEST_F(ProcessTable, WhatIsNoProcessIsPassedOver) {
    folder.write("self/status", "Uid:\t7\n");
    folder.write("12x/status", "Uid:\t7\n");
    folder.write("13/comm", "without status\n");
    folder.write("14/status", "Name:\tno user\n");
    folder.write("15/status", "Uid:\t7\n");
    EXPECT_THAT(namesOf(7), ElementsAre());
}

TEST_F(ProcessTable, AProcessThatEndsWhileItsFilesAreReadIsPassedOver) {
    addProcess("1", 7, "first");
    addProcess("4", 7, "last");
    folder.write("2/status", "Uid:\t7\n");
    // Folders open like files, and fail like the files of a process that has gone.
    std::filesystem::create_directories(folder.path() / "2" / "comm");
    std::filesystem::create_directories(folder.path() / "3" / "status");
    EXPECT_THAT(namesOf(7), ElementsAre("first", "last"));
}

TEST_F(ProcessTable, TheSixteenthByteComesFromTheExecutable) {
    addProcess("1", 7, "abcdefghijklmno", "/usr/bin/abcdefghijklmnopqrst");
    addProcess("2", 7, "abcdefghijklmno", "/usr/bin/abcdefghijklmno");
    addProcess("3", 7, "abcdefghijklmno", "/usr/bin/abcdefghijklmno (deleted)");
    addProcess("4", 7, "abcdefghijklmno", "/usr/bin/interpreter");
    addProcess("5", 7, "abcdefghijklmno");
    addProcess("6", 7, "abcdefghijklmn", "/usr/bin/abcdefghijklmnopqrst");
    EXPECT_THAT(namesOf(7), ElementsAre("abcdefghijklmnop", "abcdefghijklmno", "abcdefghijklmno",
                                        "abcdefghijklmno", "abcdefghijklmno", "abcdefghijklmn"));
}

TEST_F(ProcessTable, LongerNamesOfKernelThreadsAreCut) {
    addProcess("1", 7, "abcdefghijklmnopqrst");
    EXPECT_THAT(namesOf(7), ElementsAre("abcdefghijklmnop"));
}

TEST_F(ProcessTable, NamesMayHoldAnyByte) {
    addProcess("1", 7, "a b)\n(c");
    EXPECT_THAT(namesOf(7), ElementsAre("a b)\n(c"));
}

TEST_F(ProcessTable, AFolderThatCannotBeReadIsAnErrorWithoutAList) {
    setProcessFolderForTesting(folder.path().string() + "/missing");
    std::optional<std::vector<std::string>> names;
    EXPECT_EQ(readProcessTable(7, names), ENOENT);
    EXPECT_FALSE(names);
}

TEST_F(ProcessTable, TheSystemsTableHoldsThisProcess) {
    setProcessFolderForTesting();
    EXPECT_THAT(namesOf(getuid()), Contains("PlatformSettings"));
}

} // namespace qrv
