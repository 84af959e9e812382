#include "Platform/Logging/NSLog.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Tests/Platform/Logging/LogReceiver.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace qrv {

namespace {

/// The zone of a line is the one that the process begins with.
[[maybe_unused]] const int zone = setenv("TZ", "UTC", 1);

class SystemLog : public testing::Test {
protected:
    SystemLog() {
        setSystemLogSocketForTesting(syslog.path());
        NSProcessInfo::processInfo().setProcessNameForTesting(u"some tool");
        NSDate::setClockForTesting([] { return 815270400.123; }); // 2026-11-02 00:00:00.123
        testing::internal::CaptureStderr();
    }

    ~SystemLog() override {
        if (!taken) testing::internal::GetCapturedStderr();
        NSDate::setClockForTesting(nullptr);
    }

    std::string standardError() {
        taken = true;
        return testing::internal::GetCapturedStderr();
    }

    const std::string process = std::to_string(getpid());
    const std::string thread = std::to_string(gettid());
    LogReceiver syslog;
    bool taken = false;
};

} // namespace

TEST_F(SystemLog, LineOnStandardErrorHasDateProcessAndThread) {
    NSLog(u"%@ is %d", NSString(u"x"), 3);
    EXPECT_EQ(standardError(), "2026-11-02 00:00:00.123 some tool[" + process + ":" + thread + "] x is 3\n");
}

TEST_F(SystemLog, SameTextGoesToSyslog) {
    NSLog(u"%@ is %d", NSString(u"x"), 3);
    EXPECT_EQ(syslog.next(), "<13>Nov  2 00:00:00 some tool[" + process + "]: x is 3");
    EXPECT_FALSE(syslog.next());
}

TEST_F(SystemLog, NilFormatLogsAnEmptyText) {
    NSLog(NSString());
    EXPECT_EQ(syslog.next(), "<13>Nov  2 00:00:00 some tool[" + process + "]: ");
}

TEST_F(SystemLog, ArgumentWithPercentSignsIsLoggedLiterally) {
    NSLog(u"%@", NSString(u"%@ %d 100%"));
    EXPECT_EQ(syslog.next(), "<13>Nov  2 00:00:00 some tool[" + process + "]: %@ %d 100%");
}

TEST_F(SystemLog, WithoutSyslogTheLineIsStillOnStandardError) {
    setSystemLogSocketForTesting("/nowhere/at/all");
    NSLog(u"text");
    EXPECT_NE(standardError().find("] text\n"), std::string::npos);
}

} // namespace qrv
