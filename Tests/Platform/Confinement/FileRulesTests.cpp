#include "Platform/Confinement/FileRules.h"

#include "Tests/Support/ErrorBehind.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace qrv {
namespace {

/// The error value where the kernel's Landlock has at least this version, and 0 where it is older.
int since(long version, int error) {
    const long ours = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    return ours >= version ? error : 0;
}

class FileRulesTest : public ::testing::Test {
protected:
    FileRulesTest() {
        folder_.write("open/file", "text");
        folder_.write("closed/file", "text");
    }

    std::string at(const std::string& name) const { return (folder_.path() / name).string(); }

    /// What `call` returns in a child behind the rules: 0, or the errno value.
    static int errorBehind(const FileRules& rules, const std::function<int()>& call) {
        return qrv::errorBehind([&] { return rules.enforce(); }, call);
    }

    int errorOfOpening(const FileRules& rules, const std::string& name, int flags) const {
        return errorBehind(rules, [&] { return ::open(at(name).c_str(), flags | O_CLOEXEC, 0600); });
    }

    int errorOfExecuting(const FileRules& rules, const char* program) const {
        return errorBehind(rules, [&] { return ::execl(program, program, nullptr); });
    }

    FileRules reading() const {
        FileRules rules = FileRules::closingAll();
        rules.allow(at("open"), FileRules::read);
        return rules;
    }

    TemporaryFolder folder_;
};

TEST_F(FileRulesTest, OnlyWhatIsAllowedCanBeRead) {
    EXPECT_EQ(errorOfOpening(reading(), "open/file", O_RDONLY), 0);
    EXPECT_EQ(errorOfOpening(reading(), "open", O_RDONLY | O_DIRECTORY), 0);
    EXPECT_EQ(errorOfOpening(reading(), "closed/file", O_RDONLY), EACCES);
    EXPECT_EQ(errorOfOpening(reading(), "", O_RDONLY | O_DIRECTORY), EACCES);
}

TEST_F(FileRulesTest, ReadingAllowsNothingElse) {
    EXPECT_EQ(errorOfOpening(reading(), "open/file", O_WRONLY), EACCES);
    EXPECT_EQ(errorOfOpening(reading(), "open/new", O_WRONLY | O_CREAT), EACCES);
    EXPECT_EQ(errorBehind(reading(), [this] { return ::unlink(at("open/file").c_str()); }), EACCES);
    EXPECT_EQ(errorBehind(reading(), [this] { return ::truncate(at("open/file").c_str(), 0); }),
              since(3, EACCES));
    EXPECT_EQ(errorOfExecuting(reading(), "/bin/true"), EACCES);
}

TEST_F(FileRulesTest, WritingIsForFilesThatExist) {
    FileRules rules = FileRules::closingAll();
    rules.allow(at("open"), FileRules::write);
    EXPECT_EQ(errorOfOpening(rules, "open/file", O_WRONLY), 0);
    EXPECT_EQ(errorOfOpening(rules, "open/file", O_RDONLY), EACCES);
    EXPECT_EQ(errorOfOpening(rules, "open/new", O_WRONLY | O_CREAT), EACCES);
}

TEST_F(FileRulesTest, ChangingIsForFolders) {
    FileRules rules = FileRules::closingAll();
    rules.allow(at("open"), FileRules::change);
    EXPECT_EQ(errorOfOpening(rules, "open/new", O_WRONLY | O_CREAT), 0);
    EXPECT_EQ(errorBehind(rules, [this] { return ::rename(at("open/new").c_str(), at("open/old").c_str()); }),
              0);
    EXPECT_EQ(errorBehind(rules, [this] { return ::unlink(at("open/old").c_str()); }), 0);
    EXPECT_EQ(errorOfOpening(rules, "closed/new", O_WRONLY | O_CREAT), EACCES);
    EXPECT_EQ(errorBehind(rules, [this] { return ::unlink(at("closed/file").c_str()); }), EACCES);
}

TEST_F(FileRulesTest, AFileCanBeAllowedAlone) {
    FileRules rules = FileRules::closingAll();
    rules.allow(at("open/file"), FileRules::read | FileRules::change);
    EXPECT_EQ(errorOfOpening(rules, "open/file", O_RDWR), 0);
    EXPECT_EQ(errorOfOpening(rules, "open", O_RDONLY | O_DIRECTORY), EACCES);
}

TEST_F(FileRulesTest, WhatIsNotThereIsLeftOut) {
    FileRules rules = reading();
    rules.allow(at("missing"), FileRules::change);
    EXPECT_EQ(errorOfOpening(rules, "open/file", O_RDONLY), 0);
}

TEST_F(FileRulesTest, LinksAreFollowed) {
    ASSERT_EQ(::symlink(at("open").c_str(), at("link").c_str()), 0);
    FileRules rules = FileRules::closingAll();
    rules.allow(at("link"), FileRules::read);
    EXPECT_EQ(errorOfOpening(rules, "open/file", O_RDONLY), 0);
}

TEST_F(FileRulesTest, ReadingCanBeLeftOpen) {
    FileRules rules = FileRules::leavingRead();
    rules.allow(at("open"), FileRules::change);
    EXPECT_EQ(errorOfOpening(rules, "closed/file", O_RDONLY), 0);
    EXPECT_EQ(errorOfOpening(rules, "closed/file", O_WRONLY), EACCES);
    EXPECT_EQ(errorOfOpening(rules, "open/file", O_WRONLY), 0);
    EXPECT_EQ(errorOfExecuting(rules, "/bin/true"), EACCES);
    EXPECT_EQ(errorBehind(rules, [] { return ::kill(::getppid(), 0); }), 0);
    rules.allow("/", FileRules::execute);
    EXPECT_EQ(errorOfExecuting(rules, "/bin/true"), 0);
}

TEST_F(FileRulesTest, ClosingAllClosesWaysToOtherProcesses) {
    const FileRules rules = FileRules::closingAll();
    EXPECT_EQ(errorBehind(rules, [] { return ::kill(::getppid(), 0); }), since(6, EPERM));

    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = "rules-test-" + std::to_string(::getpid());
    std::memcpy(address.sun_path + 1, name.data(), name.size()); // a leading zero: no file
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
    ASSERT_EQ(::listen(listener, 8), 0);
    const auto connect = [&] {
        return ::connect(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0),
                         reinterpret_cast<sockaddr*>(&address), size);
    };
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(errorBehind(rules, connect), since(6, EPERM));
    ::close(listener);
}

TEST_F(FileRulesTest, RulesAreInheritedAndOnlyGrowNarrower) {
    const FileRules inner = [this] {
        FileRules rules = FileRules::closingAll();
        rules.allow(folder_.path(), FileRules::read);
        return rules;
    }();
    EXPECT_EQ(errorBehind(reading(),
                          [&] {
                              errno = errorOfOpening(inner, "closed/file", O_RDONLY);
                              return errno == 0 ? 0 : -1;
                          }),
              EACCES);
}

} // namespace
} // namespace qrv
