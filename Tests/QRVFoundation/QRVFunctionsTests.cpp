#include "QRVFoundation/Source/QRVFunctions.h"

#include <gtest/gtest.h>
#include <vector>

namespace qrv {

namespace {

/// Collects the diagnostic lines while it lives.
class Lines : public QRVLoggingDelegate {
public:
    Lines() { QRVFunctions::setLoggingDelegate(this); }

    ~Lines() override { QRVFunctions::setLoggingDelegate(nullptr); }

    void logString(const NSString& string) override { lines.push_back(string.utf8()); }

    std::vector<std::string> lines;
};

/// What the call raises; the test fails when it raises nothing.
template <class Call>
QRVException raised(Call call) {
    try {
        call();
    } catch (const QRVException& exception) {
        return exception;
    }
    ADD_FAILURE() << "nothing was raised";
    return {u"", u"", {}};
}

const NSString instance = u"an object";

} // namespace

TEST(Describe, InstanceAndSelectorReadWithAMinusSign) {
    EXPECT_EQ(describe("/a/b/File.m", 12, instance, "doThis:with:"), NSString(u"File.m:12 -doThis:with:"));
}

TEST(Describe, ClassAndSelectorReadWithAPlusSign) {
    EXPECT_EQ(describe("a/Unit", 1, Class(NSString::classInfo()), "make"), NSString(u"Unit:1 +make"));
}

TEST(Describe, WithoutObjectOrSelectorEndsInOneBlank) {
    EXPECT_EQ(describe("a/Unit", 7, {}, "make"), NSString(u"Unit:7 "));
    EXPECT_EQ(describe("a/Unit", 7, instance, nullptr), NSString(u"Unit:7 "));
    EXPECT_EQ(describe("a/Unit", 7, {}, nullptr), NSString(u"Unit:7 "));
}

TEST(Describe, NullFileAndBytesThatAreNotTextAreDefined) {
    EXPECT_EQ(describe(nullptr, 0, {}, nullptr), NSString(u":0 "));
    EXPECT_EQ(describe("a/\xFF", 1, {}, nullptr), NSString(u"\uFFFD:1 "));
    EXPECT_EQ(describe("a/b", 1, instance, "\xFF"), NSString(u"b:1 -\uFFFD"));
}

TEST(QRVFunctions, RaisedExceptionTellsReasonAtLocation) {
    const QRVException exception = raised([] {
        QRVFunctions::raiseFile_line_object_selector_name_userInfo_format(
            "x/Unit", 3, instance, "go:", u"Name", {}, u"%d of %@", 1, NSString(u"2"));
    });
    EXPECT_EQ(exception.name(), NSString(u"Name"));
    EXPECT_EQ(exception.reason(), NSString(u"1 of 2 at Unit:3 -go:"));
    EXPECT_EQ(exception.qrvReason(), NSString(u"1 of 2"));
}

TEST(QRVFunctions, RaisedExceptionIsNamedQRVExceptionWithoutAName) {
    const QRVException exception = raised([] {
        QRVFunctions::raiseFile_line_object_selector_name_userInfo_format("U", 1, {}, nullptr, {}, {}, u"r");
    });
    EXPECT_EQ(exception.name(), NSString(u"QRVException"));
    EXPECT_EQ(exception.reason(), NSString(u"r at U:1 "));
}

TEST(QRVFunctions, RaisedExceptionKeepsTheUserInfoAndReplacesItsLocation) {
    const NSDictionary userInfo{{NSString(u"QRVExceptionLocation"), NSString(u"elsewhere")},
                                {NSString(u"k"), NSString(u"v")}};
    const QRVException exception = raised([&] {
        QRVFunctions::raiseFile_line_object_selector_name_userInfo_format("U", 1, {}, nullptr, {}, userInfo,
                                                                          u"r");
    });
    EXPECT_EQ(exception.userInfo(), (NSDictionary{{NSString(u"QRVExceptionLocation"), NSString(u"U:1 ")},
                                                  {NSString(u"k"), NSString(u"v")}}));
}

TEST(QRVFunctions, RaisedExceptionIsAPlatformException) {
    try {
        QRVFunctions::raiseFile_line_object_selector_name_userInfo_format("U", 1, {}, nullptr, {}, {}, u"r");
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.reason(), NSString(u"r at U:1 "));
    }
}

TEST(QRVFunctions, NilFormatRaisesWithANilReason) {
    const QRVException exception = raised([] {
        QRVFunctions::raiseFile_line_object_selector_name_userInfo_format("U", 1, {}, nullptr, {}, {},
                                                                          NSString());
    });
    EXPECT_TRUE(exception.qrvReason().isNil());
    EXPECT_EQ(exception.reason(), NSString(u"(null) at U:1 "));
}

TEST(QRVFunctions, FailedAssertionWritesExactlyOneLineThenRaises) {
    Lines log;
    const QRVException exception = raised([] {
        QRVFunctions::assertionFailedForFile_line_object_selector_format("x/Unit", 9, instance, "go",
                                                                         u"%s is %d%%", "half", 50);
    });
    EXPECT_EQ(log.lines, std::vector<std::string>{"Unit:9 -go: Assertion Failed: half is 50%"});
    EXPECT_EQ(exception.name(), NSString(u"QRVAssertionFailedException"));
    EXPECT_EQ(exception.qrvReason(), NSString(u"half is 50%"));
    EXPECT_EQ(exception.userInfo(),
              (NSDictionary{{NSString(u"QRVExceptionLocation"), NSString(u"Unit:9 -go")}}));
}

TEST(QRVFunctions, LogFileWritesLocationBracketMessage) {
    Lines log;
    QRVFunctions::logFile_line_object_selector_format("x/Unit", 9, instance, "go", u"%@!", NSString(u"hm"));
    QRVFunctions::logFile_line_object_selector_format("x/Unit", 9, {}, nullptr, NSString());
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Unit:9 -go] hm!", "Unit:9 ] (null)"}));
}

TEST(QRVFunctions, LogFunctionWritesFunctionAndMessage) {
    Lines log;
    QRVFunctions::logFunction_format("main", u"%d", 4);
    QRVFunctions::logFunction_format(nullptr, u"x");
    EXPECT_EQ(log.lines, (std::vector<std::string>{"main 4", "(null) x"}));
}

TEST(QRVFunctions, LogStringGoesToTheDelegateOnlyWhileOneIsSet) {
    testing::internal::CaptureStderr();
    {
        Lines log;
        QRVFunctions::logString(u"to the delegate %@");
        EXPECT_EQ(log.lines, std::vector<std::string>{"to the delegate %@"});
    }
    QRVFunctions::logString(u"to the system log %@");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_EQ(written.find("to the delegate"), std::string::npos);
    EXPECT_NE(written.find("] to the system log %@\n"), std::string::npos);
}

} // namespace qrv
