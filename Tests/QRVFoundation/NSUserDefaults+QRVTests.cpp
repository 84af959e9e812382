#include "QRVFoundation/Source/NSUserDefaults+QRV.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "QRVFoundation/Source/QRVFunctions.h"
#include "Tests/Platform/Foundation/PreferencesFolder.h"

#include <gtest/gtest.h>

#include <functional>

namespace qrv {

namespace {

const char* const parentName = "org.example.Parent";

NSString text(const char* bytes) {
    return NSString::stringWithUTF8String(bytes);
}

/// Keeps what would go to the system log.
struct Log : QRVLoggingDelegate {
    Log() { QRVFunctions::setLoggingDelegate(this); }

    ~Log() override { QRVFunctions::setLoggingDelegate(nullptr); }

    void logString(const NSString& string) override { lines.push_back(string.utf8()); }

    std::vector<std::string> lines;
};

class UserDefaultsQRV : public testing::Test {
protected:
    UserDefaultsQRV() { NSProcessInfo::processInfo().setProcessNameForTesting(u"tester"); }

    ~UserDefaultsQRV() override {
        defaults.resetForTesting();
        NSProcessInfo::processInfo().setProcessNameForTesting();
    }

    void storeInParent(const id& value) { folder.write("user", parentName, NSDictionary{{key, value}}); }

    void store(const id& value) { defaults.registerDefaults(NSDictionary{{key, value}}); }

    const NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
    const NSString key = u"Key";
    const NSString parent = text(parentName);
    PreferencesFolder folder;
};

} // namespace

TEST_F(UserDefaultsQRV, AKeyMissingInTheDomainYieldsTheDefaultWhateverTheSearchListHolds) {
    store(NSNumber::numberWithInteger(1));
    folder.write("user", "tester", NSDictionary{{key, NSNumber::numberWithInteger(2)}});
    EXPECT_FALSE(qrvBoolForKey_domain_defaultValue(defaults, key, parent, false));
    EXPECT_TRUE(qrvBoolForKey_domain_defaultValue(defaults, key, parent, true));
    EXPECT_EQ(qrvIntegerForKey_domain_defaultValue(defaults, key, parent, 77), 77);
    EXPECT_EQ(qrvObjectForKey_domain_defaultValue(defaults, key, parent, text("default")), text("default"));
    EXPECT_TRUE(qrvObjectForKey_domain_defaultValue(defaults, key, parent, {}).isNil());
}

TEST_F(UserDefaultsQRV, RegisteredAndArgumentValuesAreInvisibleToTheDomainMethods) {
    store(text("registered"));
    NSProcessInfo::processInfo().setArgumentsForTesting(
        NSArray({text("tester"), text("-Argument"), text("7")}));
    defaults.setReadsArgumentDomain(true);
    EXPECT_EQ(qrvObjectForKey_defaultValue(defaults, u"Argument", {}), text("7"));
    EXPECT_EQ(qrvIntegerForKey_domain_defaultValue(defaults, u"Argument", parent, -1), -1);
    EXPECT_TRUE(qrvObjectForKey_domain_defaultValue(defaults, key, parent, {}).isNil());
    NSProcessInfo::processInfo().setArgumentsForTesting();
}

TEST_F(UserDefaultsQRV, DomainMethodsReadTheNamedDomain) {
    storeInParent(NSNumber::numberWithInteger(5));
    EXPECT_TRUE(qrvBoolForKey_domain_defaultValue(defaults, key, parent, false));
    EXPECT_EQ(qrvIntegerForKey_domain_defaultValue(defaults, key, parent, 0), 5);
    EXPECT_EQ(qrvObjectForKey_domain_defaultValue(defaults, key, parent, {}), NSNumber::numberWithInteger(5));
}

TEST_F(UserDefaultsQRV, ABooleanSettingThatThePlatformRejectsYieldsTheDefaultNotNo) {
    for (const id& value :
         {id(text("maybe")), id(NSDate::dateWithTimeIntervalSinceReferenceDate(1)), id(NSArray::array())}) {
        storeInParent(value);
        EXPECT_TRUE(qrvBoolForKey_domain_defaultValue(defaults, key, parent, true));
        EXPECT_FALSE(qrvBoolForKey_domain_defaultValue(defaults, key, parent, false));
    }
}

TEST_F(UserDefaultsQRV, AnIntegerSettingThatThePlatformRejectsYieldsTheDefault) {
    for (const id& value : {id(text("12abc")), id(NSNumber::numberWithDouble(1.5)), id(NSArray::array())}) {
        storeInParent(value);
        EXPECT_EQ(qrvIntegerForKey_domain_defaultValue(defaults, key, parent, 9), 9);
    }
}

TEST_F(UserDefaultsQRV, TheReceiverOfADomainMethodMayEvenBeNil) {
    storeInParent(NSNumber::numberWithInteger(5));
    EXPECT_EQ(qrvIntegerForKey_domain_defaultValue({}, key, parent, 0), 5);
    EXPECT_EQ(qrvIntegerForKey_domain_defaultValue({}, key, {}, 3), 3);
}

TEST_F(UserDefaultsQRV, AnObjectComesAsItIsStored) {
    store(NSArray({text("a")}));
    EXPECT_EQ(qrvObjectForKey_defaultValue(defaults, key, text("default")), NSArray({text("a")}));
}

TEST_F(UserDefaultsQRV, ANilDefaultOnAMissingKeyYieldsNil) {
    EXPECT_TRUE(qrvObjectForKey_defaultValue(defaults, key, {}).isNil());
    EXPECT_TRUE(qrvStringForKey_defaultValue(defaults, key, {}).isNil());
}

TEST_F(UserDefaultsQRV, AStringOfANumberYieldsTheDefault) {
    store(NSNumber::numberWithInteger(5));
    EXPECT_EQ(qrvStringForKey_defaultValue(defaults, key, u"default"), text("default"));
    store(text("stored"));
    EXPECT_EQ(qrvStringForKey_defaultValue(defaults, key, u"default"), text("stored"));
}

TEST_F(UserDefaultsQRV, AnIntegerOfDigitsFollowedByLettersIsTheDigitsAndOfLettersOnlyZero) {
    store(text("12abc"));
    EXPECT_EQ(qrvIntegerForKey_defaultValue(defaults, key, 7), 12);
    store(text("abc"));
    EXPECT_EQ(qrvIntegerForKey_defaultValue(defaults, key, 7), 0);
}

TEST_F(UserDefaultsQRV, StringsReadByTheirBeginning) {
    store(text("  -1.5x"));
    EXPECT_EQ(qrvIntegerForKey_defaultValue(defaults, key, 7), -1);
    EXPECT_DOUBLE_EQ(qrvDoubleForKey_defaultValue(defaults, key, 7), -1.5);
    EXPECT_TRUE(qrvBoolForKey_defaultValue(defaults, key, false));
    store(text("none"));
    EXPECT_DOUBLE_EQ(qrvDoubleForKey_defaultValue(defaults, key, 7), 0);
    EXPECT_FALSE(qrvBoolForKey_defaultValue(defaults, key, true));
}

TEST_F(UserDefaultsQRV, NumbersAnswerAsEachKind) {
    store(NSNumber::numberWithDouble(2.75));
    EXPECT_EQ(qrvIntegerForKey_defaultValue(defaults, key, 7), 2);
    EXPECT_DOUBLE_EQ(qrvDoubleForKey_defaultValue(defaults, key, 7), 2.75);
    EXPECT_TRUE(qrvBoolForKey_defaultValue(defaults, key, false));
}

TEST_F(UserDefaultsQRV, ABooleanOfADateOrOfNothingYieldsTheDefault) {
    EXPECT_TRUE(qrvBoolForKey_defaultValue(defaults, key, true));
    store(NSDate::dateWithTimeIntervalSinceReferenceDate(1));
    EXPECT_TRUE(qrvBoolForKey_defaultValue(defaults, key, true));
    EXPECT_FALSE(qrvBoolForKey_defaultValue(defaults, key, false));
}

TEST_F(UserDefaultsQRV, NumbersOfDataArraysAndDictionariesAreTheDefault) {
    for (const id& value : {id(NSData::data()), id(NSArray::array()), id(NSDictionary::dictionary())}) {
        store(value);
        EXPECT_EQ(qrvIntegerForKey_defaultValue(defaults, key, 7), 7);
        EXPECT_DOUBLE_EQ(qrvDoubleForKey_defaultValue(defaults, key, 7.5), 7.5);
        EXPECT_TRUE(qrvBoolForKey_defaultValue(defaults, key, true));
    }
}

TEST_F(UserDefaultsQRV, ASizeIsReadFromItsText) {
    store(text("{300, 400}"));
    EXPECT_EQ(qrvSizeForKey_defaultValue(defaults, key, {1, 2}), (NSSize{300, 400}));
    store(text("300"));
    EXPECT_EQ(qrvSizeForKey_defaultValue(defaults, key, {1, 2}), (NSSize{300, 0}));
}

TEST_F(UserDefaultsQRV, ASizeOfTextWithoutDigitsIsZeroAndOfAMissingKeyTheDefault) {
    EXPECT_EQ(qrvSizeForKey_defaultValue(defaults, key, {612, 792}), (NSSize{612, 792}));
    store(text("large"));
    EXPECT_EQ(qrvSizeForKey_defaultValue(defaults, key, {612, 792}), (NSSize{0, 0}));
    store(NSNumber::numberWithInteger(5));
    EXPECT_EQ(qrvSizeForKey_defaultValue(defaults, key, {612, 792}), (NSSize{612, 792}));
}

namespace {

struct NilKeyCase {
    const char* selector;
    std::function<void(const NSUserDefaults&)> call;
};

void PrintTo(const NilKeyCase& test, std::ostream* out) {
    *out << test.selector;
}

class NilKey : public UserDefaultsQRV, public testing::WithParamInterface<NilKeyCase> {};

} // namespace

TEST_P(NilKey, RaisesTheAssertionExceptionNamingTheMethod) {
    Log log;
    try {
        GetParam().call(defaults);
        FAIL() << "did not raise";
    } catch (const QRVException& e) {
        EXPECT_EQ(e.name(), NSString(QRVAssertionFailedException));
        EXPECT_EQ(e.qrvReason(), text("Precondition Failed: key"));
        const std::string location =
            e.userInfo().objectForKey(NSString(QRVExceptionLocationKey)).description().utf8();
        EXPECT_EQ(location.rfind("NSUserDefaults+QRV:", 0), 0u) << location;
        EXPECT_TRUE(location.ends_with(std::string(" -") + GetParam().selector)) << location;
        ASSERT_EQ(log.lines.size(), 1u);
        EXPECT_EQ(log.lines[0], location + ": Assertion Failed: Precondition Failed: key");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Methods, NilKey,
    testing::Values(
        NilKeyCase{"qrvBoolForKey:domain:defaultValue:",
                   [](const NSUserDefaults& d) { qrvBoolForKey_domain_defaultValue(d, {}, u"d", true); }},
        NilKeyCase{"qrvIntegerForKey:domain:defaultValue:",
                   [](const NSUserDefaults& d) { qrvIntegerForKey_domain_defaultValue(d, {}, u"d", 1); }},
        NilKeyCase{"qrvObjectForKey:domain:defaultValue:",
                   [](const NSUserDefaults& d) { qrvObjectForKey_domain_defaultValue(d, {}, u"d", {}); }},
        NilKeyCase{"qrvObjectForKey:defaultValue:",
                   [](const NSUserDefaults& d) { qrvObjectForKey_defaultValue(d, {}, {}); }},
        NilKeyCase{"qrvStringForKey:defaultValue:",
                   [](const NSUserDefaults& d) { qrvStringForKey_defaultValue(d, {}, u"x"); }},
        NilKeyCase{"qrvBoolForKey:defaultValue:",
                   [](const NSUserDefaults& d) { qrvBoolForKey_defaultValue(d, {}, true); }},
        NilKeyCase{"qrvIntegerForKey:defaultValue:",
                   [](const NSUserDefaults& d) { qrvIntegerForKey_defaultValue(d, {}, 1); }},
        NilKeyCase{"qrvDoubleForKey:defaultValue:",
                   [](const NSUserDefaults& d) { qrvDoubleForKey_defaultValue(d, {}, 1); }},
        // The size has no check of its own: the string's serves for it.
        NilKeyCase{"qrvStringForKey:defaultValue:", [](const NSUserDefaults& d) {
                       qrvSizeForKey_defaultValue(d, {}, {1, 2});
                   }}));

} // namespace qrv
