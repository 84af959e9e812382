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
    auto arguments = engineArguments("/opt/engine", true);
    EXPECT_EQ(arguments.front(), "/opt/engine");
    EXPECT_EQ(arguments.back(), "about:blank");
    EXPECT_THAT(arguments, Contains("--remote-debugging-pipe=cbor"));
}

TEST(EngineCommand, OnlyTheFullBrowserIsToldToBeHeadless) {
    EXPECT_THAT(engineArguments("/opt/engine", true), Not(Contains("--headless")));
    EXPECT_THAT(engineArguments("/opt/chromium", true), Contains("--headless"));
}

TEST(EngineCommand, TheSandboxIsLeftOutOnlyWhenAsked) {
    EXPECT_THAT(engineArguments("/opt/engine", true), Not(Contains("--no-sandbox")));
    EXPECT_THAT(engineArguments("/opt/engine", false), Contains("--no-sandbox"));
}

TEST(EngineCommand, TheEnvironmentHoldsWhatIsNamedAndNothingElse) {
    for (const char* name : {"http_proxy", "HTTPS_PROXY", "DISPLAY", "LD_PRELOAD_TEST", "SECRET"})
        ::setenv(name, "x", 1);
    ::setenv("TZ", "Asia/Tokyo", 1);
    ::setenv("HOME", "/home/somebody", 1);
    ::unsetenv("XDG_DATA_HOME");
    auto environment = engineEnvironment();
    for (const char* name : {"http_proxy", "HTTPS_PROXY", "DISPLAY", "LD_PRELOAD_TEST", "SECRET"}) {
        EXPECT_THAT(environment, Not(Contains(StartsWith(std::string(name) + "="))));
        ::unsetenv(name);
    }
    for (const char* name : {"TMPDIR=", "XDG_CONFIG_HOME="})
        EXPECT_THAT(environment, Not(Contains(StartsWith(name))));
    EXPECT_THAT(environment, Contains("TZ=Asia/Tokyo"));
    EXPECT_THAT(environment, Contains("HOME=/nonexistent"));
    EXPECT_THAT(environment, Contains("XDG_DATA_HOME=/home/somebody/.local/share"));
    ::setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_THAT(engineEnvironment(), Contains("XDG_DATA_HOME=/data"));
    ::unsetenv("XDG_DATA_HOME");
    ::unsetenv("TZ");
    EXPECT_THAT(engineEnvironment(), Not(Contains(StartsWith("TZ="))));
}

} // namespace
} // namespace qrv::engine
