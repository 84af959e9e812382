// The built program from the outside, where it needs no engine: results go to standard output, log lines to
// standard error, and the exit status is always 0.

#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv {
namespace {

using testing::HasSubstr;

class MainTest : public testing::Test {
protected:
    struct Run {
        int exitStatus = -1;
        std::string output;
        std::string log;
    };

    /// Runs the tool with these arguments; the output goes to a file unless a descriptor is given (-1:
    /// closed).
    Run run(const std::vector<std::string>& arguments, std::optional<int> output = {}) const {
        const int log = open("log");
        const int file = output ? *output : open("output");
        const pid_t child = ::fork();
        if (child == 0) {
            file >= 0 ? ::dup2(file, STDOUT_FILENO) : ::close(STDOUT_FILENO);
            ::dup2(log, STDERR_FILENO);
            std::vector<char*> list{const_cast<char*>(WEB2PDF_TOOL)};
            for (const std::string& argument : arguments) list.push_back(const_cast<char*>(argument.c_str()));
            list.push_back(nullptr);
            ::execv(WEB2PDF_TOOL, list.data());
            ::_exit(127);
        }
        ::close(log);
        if (file >= 0) ::close(file);
        int status = 0;
        ::waitpid(child, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.read("output"), folder.read("log")};
    }

    int open(const char* name) const {
        return ::open((folder.path() / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    }

    TemporaryFolder folder;
};

void expectBadArguments(const std::string& result) {
    EXPECT_TRUE(result.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>")) << result;
    EXPECT_THAT(result, HasSubstr("<key>succeeded</key>"));
    EXPECT_THAT(result, HasSubstr("<false/>"));
    EXPECT_THAT(result, HasSubstr("<key>errorData</key>"));
    EXPECT_THAT(result, HasSubstr("<string>wrong number of arguments</string>"));
    EXPECT_TRUE(result.ends_with("</plist>\n")) << result;
}

TEST_F(MainTest, AWrongNumberOfArgumentsIsToldOnStandardOutput) {
    ::unsetenv("OutPath");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{}, {"screen", "a", "b"}, {"screen", "a", "b", "uid", "more"}}) {
        const Run ended = run(arguments);
        EXPECT_EQ(ended.exitStatus, 0);
        expectBadArguments(ended.output);
        EXPECT_THAT(ended.log,
                    HasSubstr("[LogWeb2PDF] finish with error: Error Domain=org.quillvane.quillvane.web2pdf "
                              "Code=1 \"wrong number of arguments\""));
    }
}

TEST_F(MainTest, OutPathTakesTheResult) {
    ::setenv("OutPath", (folder.path() / "result.plist").c_str(), 1);
    const Run ended = run({});
    ::unsetenv("OutPath");
    EXPECT_EQ(ended.exitStatus, 0);
    EXPECT_EQ(ended.output, "");
    expectBadArguments(folder.read("result.plist"));
}

TEST_F(MainTest, AnOutPathThatCannotBeWrittenIsLogged) {
    const std::string path = (folder.path() / "missing" / "result.plist").string();
    ::setenv("OutPath", path.c_str(), 1);
    const Run ended = run({});
    ::unsetenv("OutPath");
    EXPECT_EQ(ended.exitStatus, 0);
    EXPECT_EQ(ended.output, "");
    EXPECT_THAT(ended.log, HasSubstr(" Error writing output to " + path +
                                     ": <NSError Domain=NSCocoaErrorDomain Code=4"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "missing"));
}

TEST_F(MainTest, AParentThatHasGoneDoesNotDisturbTheEnd) {
    ::unsetenv("OutPath");
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[0]);
    EXPECT_EQ(run({}, ends[1]).exitStatus, 0);
}

TEST_F(MainTest, AClosedStandardOutputDoesNotDisturbTheEnd) {
    ::unsetenv("OutPath");
    EXPECT_EQ(run({}, -1).exitStatus, 0);
}

} // namespace
} // namespace qrv
