#include "Platform/Engine/Process/EngineCommand.h"

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::Contains;
using ::testing::Not;
using ::testing::StartsWith;

TEST(EngineCommand, StartsWithTheProgramAndEndsWithAnEmptyPage) {
    auto arguments = engineArguments({"/opt/engine", true}, true);
    EXPECT_EQ(arguments.front(), "/opt/engine");
    EXPECT_EQ(arguments.back(), "about:blank");
    EXPECT_THAT(arguments, Contains("--remote-debugging-pipe"));
}

TEST(EngineCommand, OnlyTheFullBrowserIsToldToBeHeadless) {
    EXPECT_THAT(engineArguments({"/opt/engine", true}, true), Not(Contains("--headless")));
    EXPECT_THAT(engineArguments({"/opt/engine", false}, true), Contains("--headless"));
}

TEST(EngineCommand, TheSandboxIsLeftOutOnlyWhenAsked) {
    EXPECT_THAT(engineArguments({"/opt/engine", true}, true), Not(Contains("--no-sandbox")));
    EXPECT_THAT(engineArguments({"/opt/engine", true}, false), Contains("--no-sandbox"));
}

TEST(EngineCommand, TheEnvironmentHoldsWhatIsNamedAndNothingElse) {
    for (const char* name : {"http_proxy", "HTTPS_PROXY", "DISPLAY", "LD_PRELOAD_TEST", "SECRET"})
        ::setenv(name, "x", 1);
    ::setenv("TZ", "Asia/Tokyo", 1);
    ::setenv("HOME", "/home/somebody", 1);
    ::unsetenv("XDG_DATA_HOME");
    auto environment = engineEnvironment(false);
    for (const char* name : {"http_proxy", "HTTPS_PROXY", "DISPLAY", "LD_PRELOAD_TEST", "SECRET"}) {
        EXPECT_THAT(environment, Not(Contains(StartsWith(std::string(name) + "="))));
        ::unsetenv(name);
    }
    EXPECT_THAT(environment, Contains("TZ=Asia/Tokyo"));
    EXPECT_THAT(environment, Contains("HOME=/nonexistent"));
    EXPECT_THAT(environment, Contains("XDG_DATA_HOME=/home/somebody/.local/share"));
    ::setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_THAT(engineEnvironment(false), Contains("XDG_DATA_HOME=/data"));
    ::unsetenv("XDG_DATA_HOME");
    ::unsetenv("TZ");
    EXPECT_THAT(engineEnvironment(false), Not(Contains(StartsWith("TZ="))));
}

TEST(EngineCommand, TheTemporaryFolderIsTheEnginesOwnOrTheCallers) {
    const char* before = std::getenv("TMPDIR");
    const std::string callers = before ? before : "";
    ::setenv("TMPDIR", "/callers", 1);
    EXPECT_THAT(engineEnvironment(false), Contains("TMPDIR=/callers"));
    EXPECT_THAT(engineEnvironment(true), Contains("TMPDIR=/dev/shm"));
    ::unsetenv("TMPDIR");
    EXPECT_THAT(engineEnvironment(false), Contains("TMPDIR=/tmp"));
    if (before) ::setenv("TMPDIR", callers.c_str(), 1);
}

} // namespace
} // namespace qrv::engine
