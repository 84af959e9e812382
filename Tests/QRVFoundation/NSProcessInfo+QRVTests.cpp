#include "QRVFoundation/Source/NSProcessInfo+QRV.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Foundation/ProcessTable.h"
#include "Platform/Foundation/Sysctl.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv {

namespace {

constexpr double newest = 1677.104;

class ProcessInfoQRV : public testing::Test {
protected:
    ~ProcessInfoQRV() override {
        info.setVersionForTesting();
        setSystemFolderForTesting();
        setProcessFolderForTesting();
    }

    NSProcessInfo& info = NSProcessInfo::processInfo();
    TemporaryFolder folder;
};

struct FoundationCase {
    bool (*isAtLeast)();
    double below;
    double atLeast;
};

void PrintTo(const FoundationCase& test, std::ostream* out) {
    *out << test.below << " and " << test.atLeast;
}

class FoundationThreshold : public ProcessInfoQRV, public testing::WithParamInterface<FoundationCase> {};

struct SystemCase {
    bool (*isAtLeast)();
    NSOperatingSystemVersion version;
};

void PrintTo(const SystemCase& test, std::ostream* out) {
    *out << testing::PrintToString(test.version);
}

class SystemThreshold : public ProcessInfoQRV, public testing::WithParamInterface<SystemCase> {};

} // namespace

TEST_P(FoundationThreshold, DecidesByTheFoundationVersion) {
    info.setVersionForTesting({GetParam().below, {10, 0, 0}});
    EXPECT_FALSE(GetParam().isAtLeast());
    info.setVersionForTesting({GetParam().atLeast, {10, 0, 0}});
    EXPECT_TRUE(GetParam().isAtLeast());
}

// The three oldest compare the number rounded down, so that a fraction does not help; the beta does not
// round.
INSTANTIATE_TEST_SUITE_P(Versions, FoundationThreshold,
                         testing::Values(FoundationCase{qrvIsMacOSAtLeast10_8, 833.99, 834},
                                         FoundationCase{qrvIsMacOSAtLeast10_8, 0, newest},
                                         FoundationCase{qrvIsMacOSAtLeast10_9, 945.99, 946},
                                         FoundationCase{qrvIsMacOSAtLeast10_10, 1056.0, 1057},
                                         FoundationCase{qrvIsMacOSAtLeast10_10, 1056.99, 1057.5},
                                         FoundationCase{qrvIsMacOSAtLeast10_15DeveloperBeta5, 1665.0, 1665.1},
                                         FoundationCase{qrvIsMacOSAtLeast10_15DeveloperBeta5, 1665.09,
                                                        1665.11}));

TEST_P(SystemThreshold, DecidesByTheSystemVersion) {
    const NSOperatingSystemVersion version = GetParam().version;
    info.setVersionForTesting({newest, version});
    EXPECT_TRUE(GetParam().isAtLeast());
    NSOperatingSystemVersion before = version;
    if (before.patchVersion > 0) {
        --before.patchVersion;
    } else {
        before = {10, version.minorVersion - 1, 99};
    }
    info.setVersionForTesting({newest, before});
    EXPECT_FALSE(GetParam().isAtLeast());
    info.setVersionForTesting({1056.0, version});
    EXPECT_FALSE(GetParam().isAtLeast()) << "a foundation older than 10.10 answers no";
}

INSTANTIATE_TEST_SUITE_P(Versions, SystemThreshold,
                         testing::Values(SystemCase{qrvIsMacOSAtLeast10_11, {10, 11, 0}},
                                         SystemCase{qrvIsMacOSAtLeast10_12, {10, 12, 0}},
                                         SystemCase{qrvIsMacOSAtLeast10_12_2, {10, 12, 2}},
                                         SystemCase{qrvIsMacOSAtLeast10_13, {10, 13, 0}},
                                         SystemCase{qrvIsMacOSAtLeast10_13_2, {10, 13, 2}},
                                         SystemCase{qrvIsMacOSAtLeast10_14, {10, 14, 0}},
                                         SystemCase{qrvIsMacOSAtLeast10_15, {10, 15, 0}},
                                         SystemCase{qrvIsMacOSAtLeast10_15_4, {10, 15, 4}}));

TEST_F(ProcessInfoQRV, ThePlatformAsStatedIsAtLeastAllOfThem) {
    EXPECT_TRUE(qrvIsMacOSAtLeast10_8());
    EXPECT_TRUE(qrvIsMacOSAtLeast10_9());
    EXPECT_TRUE(qrvIsMacOSAtLeast10_10());
    EXPECT_TRUE(qrvIsMacOSAtLeast10_15_4());
    EXPECT_TRUE(qrvIsMacOSAtLeast10_15DeveloperBeta5());
    EXPECT_TRUE(qrvIsOperatingSystemAtLeastVersion({10, 15, 7}));
    EXPECT_FALSE(qrvIsOperatingSystemAtLeastVersion({10, 15, 8}));
}

TEST_F(ProcessInfoQRV, FoundationVersion1056ExactlyIsBefore10_10AndEveryLaterCheckIsFalse) {
    info.setVersionForTesting({1056.0, {10, 15, 7}});
    EXPECT_FALSE(qrvIsMacOSAtLeast10_10());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_11());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_12());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_12_2());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_13());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_13_2());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_14());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_15());
    EXPECT_FALSE(qrvIsMacOSAtLeast10_15_4());
    EXPECT_FALSE(qrvIsOperatingSystemAtLeastVersion({0, 0, 0}));
}

TEST_F(ProcessInfoQRV, DeveloperBeta5NeedsFoundation1665Point1) {
    info.setVersionForTesting({1665.0, {10, 15, 0}});
    EXPECT_FALSE(qrvIsMacOSAtLeast10_15DeveloperBeta5());
    info.setVersionForTesting({1665.1, {10, 15, 0}});
    EXPECT_TRUE(qrvIsMacOSAtLeast10_15DeveloperBeta5());
}

namespace {

struct ParseCase {
    const char16_t* text;
    NSOperatingSystemVersion version;
};

void PrintTo(const ParseCase& test, std::ostream* out) {
    *out << printed(test.text);
}

class GoodVersionText : public testing::TestWithParam<ParseCase> {};

class BadVersionText : public testing::TestWithParam<const char16_t*> {};

} // namespace

TEST_P(GoodVersionText, Parses) {
    NSOperatingSystemVersion version;
    NSError error;
    EXPECT_TRUE(qrvGetOperatingSystemVersion_fromString_error(&version, GetParam().text, &error));
    EXPECT_EQ(version, GetParam().version);
    EXPECT_TRUE(error.isNil());
}

INSTANTIATE_TEST_SUITE_P(Versions, GoodVersionText,
                         testing::Values(ParseCase{u"10.15", {10, 15, 0}}, ParseCase{u"10.15.7", {10, 15, 7}},
                                         ParseCase{u"10.x.1", {10, 0, 1}}, ParseCase{u".", {0, 0, 0}},
                                         ParseCase{u"..", {0, 0, 0}},
                                         ParseCase{u"10.15b3.2 beta", {10, 15, 2}},
                                         ParseCase{u" 11. 2", {11, 2, 0}}));

TEST_P(BadVersionText, FailsWithParameterError) {
    NSOperatingSystemVersion version = {1, 2, 3};
    NSError error;
    EXPECT_FALSE(qrvGetOperatingSystemVersion_fromString_error(&version, GetParam(), &error));
    EXPECT_EQ(version, (NSOperatingSystemVersion{1, 2, 3}));
    EXPECT_EQ(error.domain(), NSString(NSOSStatusErrorDomain));
    EXPECT_EQ(error.code(), -50);
    EXPECT_EQ(error.localizedDescription(),
              NSString(std::u16string(u"Error parsing OS version: ") + GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Versions, BadVersionText, testing::Values(u"10", u"10.15.7.1", u"", u"..."));

TEST_F(ProcessInfoQRV, GetVersionFromNilFailsNamingNull) {
    NSOperatingSystemVersion version;
    NSError error;
    EXPECT_FALSE(qrvGetOperatingSystemVersion_fromString_error(&version, {}, &error));
    EXPECT_EQ(error.localizedDescription(), NSString(u"Error parsing OS version: (null)"));
}

TEST_F(ProcessInfoQRV, GetVersionWithAnAbsentDestinationFailsAlthoughTheTextIsGood) {
    NSError error;
    EXPECT_FALSE(qrvGetOperatingSystemVersion_fromString_error(nullptr, u"10.15", &error));
    EXPECT_EQ(error.code(), -50);
    EXPECT_FALSE(qrvGetOperatingSystemVersion_fromString_error(nullptr, u"10.15", nullptr));
}

TEST_F(ProcessInfoQRV, OSVersionStringJoinsTheThreePieces) {
    EXPECT_EQ(qrvOSVersionString(), NSString(u"10.15.7"));
    info.setVersionForTesting({newest, {12, 0, 1}});
    EXPECT_EQ(qrvOSVersionString(), NSString(u"12.0.1"));
}

TEST_F(ProcessInfoQRV, MaximumOpenFilesCountIsTheSoftLimit) {
    rlimit limit = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(qrvMaximumOpenFilesCount(), limit.rlim_cur);
}

TEST_F(ProcessInfoQRV, SettingMoreThanTheHardLimitFailsSilentlyAndLeavesTheLimits) {
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    // Above what the kernel allows to anyone, whatever the privileges.
    qrvSetMaximumOpenFilesCount(std::uint64_t{1} << 62);
    rlimit after = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &after), 0);
    EXPECT_EQ(after.rlim_cur, before.rlim_cur);
    EXPECT_EQ(after.rlim_max, before.rlim_max);
}

TEST_F(ProcessInfoQRV, SettingTheMaximumSetsBothLimits) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        qrvSetMaximumOpenFilesCount(64);
        rlimit limit = {};
        getrlimit(RLIMIT_NOFILE, &limit);
        _exit(limit.rlim_cur == 64 && limit.rlim_max == 64 && qrvMaximumOpenFilesCount() == 64 ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(ProcessInfoQRV, IsNeverTheStoresVersion) {
    EXPECT_FALSE(qrvIsMacAppStoreVersion());
}

TEST_F(ProcessInfoQRV, IsInAppSandboxWhenTheSettingSaysSo) {
    const NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
    EXPECT_FALSE(qrvIsInAppSandbox());
    defaults.registerDefaults(NSDictionary{{NSString(u"QRVAppSandbox"), NSNumber::numberWithBool(true)}});
    EXPECT_TRUE(qrvIsInAppSandbox());
    defaults.registerDefaults(NSDictionary{{NSString(u"QRVAppSandbox"), NSString(u"no")}});
    EXPECT_FALSE(qrvIsInAppSandbox());
    defaults.resetForTesting();
}

TEST_F(ProcessInfoQRV, IsInXcodeWhenTheVariableIsThereEvenEmpty) {
    unsetenv("__XCODE_BUILT_PRODUCTS_DIR_PATHS");
    EXPECT_FALSE(qrvIsInXcode());
    setenv("__XCODE_BUILT_PRODUCTS_DIR_PATHS", "", 1);
    EXPECT_TRUE(qrvIsInXcode());
    setenv("__XCODE_BUILT_PRODUCTS_DIR_PATHS", "/products", 1);
    EXPECT_TRUE(qrvIsInXcode());
    unsetenv("__XCODE_BUILT_PRODUCTS_DIR_PATHS");
}

TEST_F(ProcessInfoQRV, HardwareModelIsTheSystems) {
    folder.write("sys/class/dmi/id/product_name", "Model 7\n");
    setSystemFolderForTesting(folder.path().string());
    EXPECT_EQ(qrvHardwareModel(), NSString(u"Model 7"));
}

TEST_F(ProcessInfoQRV, HardwareModelIsUnknownWhenTheQueryFails) {
    setSystemFolderForTesting(folder.path().string());
    EXPECT_EQ(qrvHardwareModel(), NSString(u"unknown"));
}

TEST_F(ProcessInfoQRV, ProcessorCountAndFrequencyAreTheNamedValues) {
    folder.write("sys/devices/system/cpu/cpu0/topology/thread_siblings_list", "0-1\n");
    folder.write("sys/devices/system/cpu/cpu1/topology/thread_siblings_list", "0-1\n");
    folder.write("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "2900000\n");
    setSystemFolderForTesting(folder.path().string());
    EXPECT_EQ(qrvMaxPhysicalProcessorCount(), 1);
    EXPECT_EQ(qrvMaxProcessorFrequency(), 2'900'000'000);
}

TEST_F(ProcessInfoQRV, SysctlStringIsTheValueUpToItsZeroByte) {
    utsname names = {};
    ASSERT_EQ(uname(&names), 0);
    EXPECT_EQ(qrvSysctlStringForKey(u"kern.osrelease").utf8(), names.release);
    EXPECT_TRUE(qrvSysctlStringForKey(u"kern.nothing").isNil());
    EXPECT_TRUE(qrvSysctlStringForKey({}).isNil());
}

TEST_F(ProcessInfoQRV, SysctlStringThatIsNotUTF8IsNil) {
    folder.write("sys/class/dmi/id/product_name", "Model \xFF\n");
    setSystemFolderForTesting(folder.path().string());
    EXPECT_TRUE(qrvSysctlStringForKey(u"hw.model").isNil());
    EXPECT_EQ(qrvHardwareModel(), NSString(u"unknown"));
}

TEST_F(ProcessInfoQRV, SysctlIntegersOfAnotherSizeOrUnknownAreZero) {
    EXPECT_EQ(qrvSysctlInt32ForKey(u"hw.ncpu"), sysconf(_SC_NPROCESSORS_ONLN));
    EXPECT_EQ(qrvSysctlInt64ForKey(u"hw.ncpu"), 0);
    EXPECT_EQ(qrvSysctlInt64ForKey(u"hw.pagesize"), sysconf(_SC_PAGESIZE));
    EXPECT_EQ(qrvSysctlInt32ForKey(u"hw.pagesize"), 0);
    EXPECT_EQ(qrvSysctlInt32ForKey(u"hw.nothing"), 0);
    EXPECT_EQ(qrvSysctlInt64ForKey({}), 0);
}

namespace {

/// A sleeping process that runs a copy of a system tool under a name of its own.
class NamedProcess {
public:
    NamedProcess(const TemporaryFolder& folder, const std::string& name) {
        const std::string program = folder.path().string() + "/" + name;
        std::filesystem::copy_file("/bin/sleep", program);
        int ready[2];
        if (pipe2(ready, O_CLOEXEC) != 0) return;
        process_ = fork();
        if (process_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            execl(program.c_str(), name.c_str(), "60", nullptr);
            _exit(127);
        }
        close(ready[1]);
        // The other end closes when the program has taken over.
        char byte = 0;
        while (read(ready[0], &byte, 1) > 0) {
        }
        close(ready[0]);
    }

    ~NamedProcess() {
        if (process_ <= 0) return;
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

    NamedProcess(const NamedProcess&) = delete;
    NamedProcess& operator=(const NamedProcess&) = delete;

private:
    pid_t process_ = -1;
};

} // namespace

TEST_F(ProcessInfoQRV, AProcessIsFoundByIts16CharacterShortNameAndNotByItsFullLongerName) {
    const NamedProcess process(folder, "qrv-long-named-process");
    EXPECT_TRUE(qrvIsBSDProcessRunning(u"qrv-long-named-p"));
    EXPECT_FALSE(qrvIsBSDProcessRunning(u"qrv-long-named-process"));
    EXPECT_FALSE(qrvIsBSDProcessRunning(u"qrv-long-named-"));
    EXPECT_FALSE(qrvIsBSDProcessRunning(u"QRV-LONG-NAMED-P"));
}

TEST_F(ProcessInfoQRV, AProcessWithAShortNameIsFoundByItAsLongAsItRuns) {
    {
        const NamedProcess process(folder, "qrv-brief");
        EXPECT_TRUE(qrvIsBSDProcessRunning(u"qrv-brief"));
    }
    EXPECT_FALSE(qrvIsBSDProcessRunning(u"qrv-brief"));
}

TEST_F(ProcessInfoQRV, AProcessOfAnotherUserIsNotSeen) {
    folder.write("10/status", "Uid:\t" + std::to_string(getuid() + 1) + "\t0\t0\t0\n");
    folder.write("10/comm", "others\n");
    folder.write("11/status", "Uid:\t" + std::to_string(getuid()) + "\t0\t0\t0\n");
    folder.write("11/comm", "own\n");
    setProcessFolderForTesting(folder.path().string());
    EXPECT_FALSE(qrvIsBSDProcessRunning(u"others"));
    EXPECT_TRUE(qrvIsBSDProcessRunning(u"own"));
}

TEST_F(ProcessInfoQRV, NoProcessHasAnEmptyOrNilName) {
    EXPECT_FALSE(qrvIsBSDProcessRunning(u""));
    EXPECT_FALSE(qrvIsBSDProcessRunning({}));
}

TEST_F(ProcessInfoQRV, AProcessTableThatCannotBeReadRaises) {
    setProcessFolderForTesting(folder.path().string() + "/missing");
    try {
        qrvIsBSDProcessRunning(u"any");
        FAIL() << "did not raise";
    } catch (const NSException& e) {
        EXPECT_EQ(e.name(), NSString(NSInternalInconsistencyException));
        EXPECT_EQ(e.reason(), NSString(u"Invalid parameter not satisfying: err == 0"));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(u"NSAssertPlace")),
                  NSString(u"+[NSProcessInfo(QRV) qrvIsBSDProcessRunning:]"));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(u"NSAssertFile")),
                  NSString(u"QRVFoundation/Source/NSProcessInfo+QRV"));
    }
}

TEST_F(ProcessInfoQRV, PreventPartialLaunchingDisablesAutomaticTerminationWithItsReason) {
    qrvPreventPartialLaunching();
    EXPECT_TRUE(info.automaticTerminationSupportEnabled());
    EXPECT_TRUE(info.automaticTerminationDisablingReasons().containsObject(NSString(u"need to receive IPC")));
}

} // namespace qrv
