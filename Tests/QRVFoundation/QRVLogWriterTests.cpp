#include "QRVFoundation/Source/QRVLogWriter.h"

#include "Platform/Foundation/NSException.h"
#include "QRVFoundation/Source/QRVNSLogWriter.h"

#include "Platform/Logging/NSLog.h"
#include "Platform/Logging/os_log.h"
#include "Tests/Platform/Logging/LogReceiver.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(QRVLogWriter, WritingThroughTheBaseClassRaises) {
    QRVLogWriter writer;
    try {
        writer.writePrefix_message_area(u"p", u"m", {});
        FAIL();
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSString(NSInvalidArgumentException));
        EXPECT_NE(exception.reason().rangeOfString(u"writePrefix:message:area:").location, NSNotFound);
    }
}

TEST(QRVLogWriter, CombiningPutsOneBlankBetweenAlsoAfterAnEmptyPrefix) {
    const QRVLogWriter writer;
    EXPECT_EQ(writer.combinePrefix_andMessage(u"a", u"b"), NSString(u"a b"));
    EXPECT_EQ(writer.combinePrefix_andMessage(u"", u"b"), NSString(u" b"));
    EXPECT_EQ(writer.combinePrefix_andMessage(u"a %@", u"%d"), NSString(u"a %@ %d"));
    EXPECT_EQ(writer.combinePrefix_andMessage({}, {}), NSString(u"(null) (null)"));
}

namespace {

/// What the system log's line on standard error says after its date and process.
std::string written(const NSString& prefix, const NSString& message) {
    testing::internal::CaptureStderr();
    QRVNSLogWriter().writePrefix_message_area(prefix, message, u"Area");
    const std::string line = testing::internal::GetCapturedStderr();
    const std::size_t end = line.find("] ");
    return end == std::string::npos ? line : line.substr(end + 2);
}

} // namespace

TEST(QRVNSLogWriter, WritesALeadingBlankWhenThePrefixIsEmpty) {
    EXPECT_EQ(written(u"", u"text"), " text\n");
}

TEST(QRVNSLogWriter, NeverSplits) {
    EXPECT_EQ(written(u"p", std::u16string(1000, u'x')), "p " + std::string(1000, 'x') + "\n");
}

TEST(QRVNSLogWriter, PercentSignsAreLoggedLiterally) {
    EXPECT_EQ(written(u"%@", u"%d"), "%@ %d\n");
}

TEST(QRVNSLogWriter, WritesToTheSystemLogAndNotToTheUnifiedLog) {
    LogReceiver journal;
    LogReceiver syslog;
    setJournalSocketForTesting(journal.path());
    setSystemLogSocketForTesting(syslog.path());
    EXPECT_EQ(written(u"p", u"m"), "p m\n");
    EXPECT_FALSE(journal.next());
    EXPECT_TRUE(syslog.next().value_or("").ends_with("]: p m"));
}

} // namespace qrv
