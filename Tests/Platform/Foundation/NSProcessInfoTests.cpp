#include "Platform/Foundation/NSProcessInfo.h"

#include "Platform/Foundation/NSException.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

namespace qrv {

class ProcessInfo : public testing::Test {
protected:
    ~ProcessInfo() override {
        info.setVersionForTesting();
        info.setArgumentsForTesting();
        info.setProcessNameForTesting();
        unsetenv("PROCESS_INFO_TEST");
    }

    NSProcessInfo& info = NSProcessInfo::processInfo();
};

TEST_F(ProcessInfo, ArgumentsBeginWithTheCommandsOwnName) {
    const NSArray arguments = info.arguments();
    ASSERT_GE(arguments.count(), 1u);
    EXPECT_TRUE(as<NSString>(arguments.objectAtIndex(0)).hasSuffix(u"PlatformSettingsTests"));
    EXPECT_EQ(info.processName(), NSString(u"PlatformSettingsTests"));
}

TEST_F(ProcessInfo, TakesTheCommandLineFromMainWhateverItsBytes) {
    const NSArray before = info.arguments();
    const char* const arguments[] = {"/bin/tool", "", "caf\xE9", "é"};
    info.setArguments(4, arguments);
    EXPECT_EQ(info.arguments(),
              NSArray({NSString(u"/bin/tool"), NSString(u""), NSString(u"caf\xDCE9"), NSString(u"é")}));
    EXPECT_EQ(info.processName(), NSString(u"tool"));
    const std::string name = as<NSString>(before.objectAtIndex(0)).fileSystemRepresentation();
    const char* const own = name.c_str();
    info.setArguments(1, &own);
    EXPECT_EQ(info.arguments(), before);
}

TEST_F(ProcessInfo, ArgumentsOfATestReplaceTheTrueOnesAndNameTheProcess) {
    info.setArgumentsForTesting(NSArray({NSString(u"/usr/bin/web2pdf"), NSString(u"screen")}));
    EXPECT_EQ(info.arguments().count(), 2u);
    EXPECT_EQ(info.processName(), NSString(u"web2pdf"));
    info.setProcessNameForTesting(u"other");
    EXPECT_EQ(info.processName(), NSString(u"other"));
}

TEST_F(ProcessInfo, AnEmptyArgumentListLeavesTheProgramsName) {
    info.setArgumentsForTesting(NSArray::array());
    EXPECT_EQ(info.processName(), NSString(u"PlatformSettingsTests"));
}

TEST_F(ProcessInfo, IdentifierIsTheKernels) {
    EXPECT_EQ(info.processIdentifier(), getpid());
}

TEST_F(ProcessInfo, EnvironmentIsReadAtTheTimeOfTheCall) {
    EXPECT_TRUE(info.environment().objectForKey(NSString(u"PROCESS_INFO_TEST")).isNil());
    setenv("PROCESS_INFO_TEST", "a=b", 1);
    EXPECT_EQ(info.environment().objectForKey(NSString(u"PROCESS_INFO_TEST")), NSString(u"a=b"));
    setenv("PROCESS_INFO_TEST", "caf\xE9", 1);
    EXPECT_EQ(info.environment().objectForKey(NSString(u"PROCESS_INFO_TEST")), NSString(u"caf\xDCE9"));
    setenv("PROCESS_INFO_TEST", "", 1);
    EXPECT_EQ(info.environment().objectForKey(NSString(u"PROCESS_INFO_TEST")), NSString(u""));
}

TEST_F(ProcessInfo, StatesTheVersionOfThePlatformNotTheKernels) {
    EXPECT_EQ(info.operatingSystemVersion(), (NSOperatingSystemVersion{10, 15, 7}));
    EXPECT_DOUBLE_EQ(NSFoundationVersionNumber(), 1677.104);
}

TEST_F(ProcessInfo, VersionsCompareByMajorThenMinorThenPatch) {
    EXPECT_TRUE(info.isOperatingSystemAtLeastVersion({10, 15, 7}));
    EXPECT_FALSE(info.isOperatingSystemAtLeastVersion({10, 15, 8}));
    EXPECT_FALSE(info.isOperatingSystemAtLeastVersion({10, 16, 0}));
    EXPECT_FALSE(info.isOperatingSystemAtLeastVersion({11, 0, 0}));
    EXPECT_TRUE(info.isOperatingSystemAtLeastVersion({10, 14, 99}));
    EXPECT_TRUE(info.isOperatingSystemAtLeastVersion({9, 99, 99}));
}

TEST_F(ProcessInfo, AVersionOfATestReplacesTheStatedOne) {
    info.setVersionForTesting({1056.0, {10, 9, 5}});
    EXPECT_DOUBLE_EQ(NSFoundationVersionNumber(), 1056.0);
    EXPECT_FALSE(info.isOperatingSystemAtLeastVersion({10, 10, 0}));
}

TEST_F(ProcessInfo, AutomaticTerminationKeepsWhatWasAsked) {
    EXPECT_FALSE(info.automaticTerminationSupportEnabled());
    info.setAutomaticTerminationSupportEnabled(true);
    info.disableAutomaticTermination(u"busy");
    EXPECT_TRUE(info.automaticTerminationSupportEnabled());
    EXPECT_TRUE(info.automaticTerminationDisablingReasons().containsObject(NSString(u"busy")));
    EXPECT_THROW(info.disableAutomaticTermination({}), NSException);
}

} // namespace qrv
