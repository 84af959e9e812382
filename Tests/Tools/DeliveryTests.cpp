// finishWithData: where the result goes.

#include "Source/Tools/loader.h"
#include "Tests/Tools/ToolTest.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

namespace qrv {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

using DeliveryTest = ToolTest;

TEST_F(DeliveryTest, WritesTheFileThatOutPathNames) {
    finishWithData(NSData("result"));
    EXPECT_EQ(folder.read("result.plist"), "result");
    EXPECT_EQ(folder.count(), 1U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(DeliveryTest, ReplacesAnOldFile) {
    folder.write("result.plist", "an old and longer result");
    finishWithData(NSData("new"));
    EXPECT_EQ(folder.read("result.plist"), "new");
}

TEST_F(DeliveryTest, WithoutOutPathWritesStandardOutputAndClosesIt) {
    ::unsetenv("OutPath");
    const int saved = ::dup(STDOUT_FILENO);
    const int file = ::open((folder.path() / "output").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::dup2(file, STDOUT_FILENO), STDOUT_FILENO);
    ::close(file);
    finishWithData(NSData("result"));
    const bool closed = ::fcntl(STDOUT_FILENO, F_GETFD) < 0;
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    EXPECT_TRUE(closed);
    EXPECT_EQ(folder.read("output"), "result");
    EXPECT_FALSE(std::filesystem::exists(resultPath()));
}

TEST_F(DeliveryTest, AMissingFolderIsLoggedWithoutAreaAndNothingIsWritten) {
    const std::string path = (folder.path() / "missing" / "result.plist").string();
    ::setenv("OutPath", path.c_str(), 1);
    finishWithData(NSData("result"));
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_TRUE(log.lines()[0].starts_with(" Error writing output to " + path +
                                           ": <NSError Domain=NSCocoaErrorDomain Code=4 "))
        << log.lines()[0];
    EXPECT_EQ(folder.count(), 0U);
}

TEST_F(DeliveryTest, AnEmptyOutPathIsAPathToo) {
    ::setenv("OutPath", "", 1);
    testing::internal::CaptureStdout();
    finishWithData(NSData("result"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_TRUE(log.lines()[0].starts_with(" Error writing output to : <NSError ")) << log.lines()[0];
}

TEST_F(DeliveryTest, AFailureNamesTheUnitAndTheFunctionAndNeedsNoArea) {
    log.install({QRVLoggerIncludeFile, QRVLoggerIncludeLine, QRVLoggerIncludeFunction});
    ::setenv("OutPath", folder.path().c_str(), 1);
    finishWithData(NSData("result"));
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_THAT(log.lines()[0].substr(0, log.lines()[0].find('\n')),
                MatchesRegex("loader:[0-9]+ void finishWithData\\(NSData \\*\\) Error writing output to .*"));
}

} // namespace
} // namespace qrv
