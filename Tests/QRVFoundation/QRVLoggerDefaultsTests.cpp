// Loggers whose settings come from the user defaults.

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"
#include "QRVFoundation/Source/QRVLogger.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace qrv {

namespace {

class LoggerDefaults : public testing::Test {
protected:
    LoggerDefaults() {
        setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
        setenv("XDG_CONFIG_DIRS", folder.path().c_str(), 1);
        NSProcessInfo::processInfo().setProcessNameForTesting(u"tool");
    }

    ~LoggerDefaults() override {
        QRVLogger::setSharedLogger(nullptr);
        NSUserDefaults::standardUserDefaults().resetForTesting();
    }

    /// Makes a domain in which the key is on.
    void switchOn(const std::string& domain, const std::string& key) {
        folder.write("preferences/" + domain + ".plist",
                     "<plist version=\"1.0\"><dict><key>" + key + "</key><true/></dict></plist>");
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(LoggerDefaults, InitTakesAllOfTheStandardUserDefaults) {
    switchOn("tool", "AreaOfTheProcess");
    switchOn(".GlobalPreferences", "AreaOfAll");
    NSUserDefaults::standardUserDefaults().registerDefaults(
        {{NSString(u"AreaRegistered"), NSNumber::numberWithBool(true)}});
    const QRVLogger logger;
    EXPECT_TRUE(logger.isEnabledForArea(u"AreaOfTheProcess"));
    EXPECT_TRUE(logger.isEnabledForArea(u"AreaOfAll"));
    EXPECT_TRUE(logger.isEnabledForArea(u"AreaRegistered"));
    EXPECT_FALSE(logger.isEnabledForArea(u"OtherArea"));
    EXPECT_TRUE(logger.isOptionEnabled(QRVLoggerIncludeArea));
}

TEST_F(LoggerDefaults, PersistentDomainIsTheOnlyOneRead) {
    switchOn("org.example.app", "Area");
    switchOn("tool", "AreaOfTheProcess");
    const auto logger = QRVLogger::initWithPersistentDomainName(u"org.example.app");
    EXPECT_TRUE(logger->isEnabledForArea(u"Area"));
    EXPECT_FALSE(logger->isEnabledForArea(u"AreaOfTheProcess"));
}

TEST_F(LoggerDefaults, UnknownOrNilDomainLeavesTheDefaults) {
    for (const NSString& name : {NSString(u"org.example.unknown"), NSString()}) {
        const auto logger = QRVLogger::initWithPersistentDomainName(name);
        EXPECT_FALSE(logger->isEnabledForArea(u"Area"));
        EXPECT_TRUE(logger->isOptionEnabled(QRVLoggerIncludeArea));
        EXPECT_FALSE(logger->isOptionEnabled(QRVLoggerIncludeFile));
    }
}

TEST_F(LoggerDefaults, SetUpWithPersistentDomainNameInstallsOneLoggerForAllCalls) {
    switchOn("org.example.app", "Area");
    QRVLogger::setUpWithPersistentDomainName(u"org.example.app");
    const auto logger = QRVLogger::sharedLogger();
    EXPECT_EQ(QRVLogger::sharedLogger(), logger);
    EXPECT_TRUE(logger->isEnabledForArea(u"Area"));
    EXPECT_FALSE(logger->isEnabledForArea(u"OtherArea"));
}

TEST_F(LoggerDefaults, ChangeOfTheDefaultsTakesEffectForLaterLoggersOnly) {
    const auto before = QRVLogger::initWithPersistentDomainName(u"org.example.app");
    switchOn("org.example.app", "Area");
    EXPECT_FALSE(before->isEnabledForArea(u"Area"));
    EXPECT_TRUE(QRVLogger::initWithPersistentDomainName(u"org.example.app")->isEnabledForArea(u"Area"));
}

TEST_F(LoggerDefaults, ErrorShortLoggingAddsOneSystemLogLineAndLeavesTheFullDescription) {
    const NSError error = NSError::errorWithDomain_code_userInfo(u"D", 7, {});
    testing::internal::CaptureStderr();
    const NSString quiet = qrvFullDescription(error);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    switchOn("tool", "ErrorShortLogging");
    testing::internal::CaptureStderr();
    EXPECT_EQ(qrvFullDescription(error), quiet);
    const std::string line = testing::internal::GetCapturedStderr();
    const std::string expected = "] Error: " + error.description().utf8() + "\n";
    EXPECT_TRUE(line.ends_with(expected)) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1);
}

} // namespace qrv
