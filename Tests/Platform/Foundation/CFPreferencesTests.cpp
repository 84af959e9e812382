#include "Platform/Foundation/CFPreferences.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/PreferencesFolder.h"

#include <gtest/gtest.h>

#include <limits>

#include <sys/stat.h>

namespace qrv {

namespace {

const char* const domainName = "org.example.Application";

NSString key() {
    return u"Key";
}

NSString domain() {
    return NSString::stringWithUTF8String(domainName);
}

NSDictionary holding(const id& value) {
    return NSDictionary{{key(), value}};
}

NSNumber integer(long long value) {
    return NSNumber::numberWithInteger(value);
}

std::vector<std::string>& warnings() {
    static std::vector<std::string> list;
    return list;
}

class Preferences : public testing::Test {
protected:
    Preferences() {
        warnings().clear();
        setPreferencesWarning([](const NSString& message) { warnings().push_back(message.utf8()); });
    }

    ~Preferences() override { setPreferencesWarning(nullptr); }

    id value() { return CFPreferencesCopyAppValue(key(), domain()); }

    PreferencesFolder folder;
};

struct BooleanCase {
    const char* name;
    id stored;
    bool isValid;
    bool value;
};

class BooleanForm : public Preferences, public testing::WithParamInterface<BooleanCase> {};

struct IntegerCase {
    const char* name;
    id stored;
    bool isValid;
    long long value;
};

class IntegerForm : public Preferences, public testing::WithParamInterface<IntegerCase> {};

void PrintTo(const BooleanCase& test, std::ostream* out) {
    *out << test.name;
}

void PrintTo(const IntegerCase& test, std::ostream* out) {
    *out << test.name;
}

} // namespace

TEST_F(Preferences, AMissingFileOrKeyHasNoValueAndNoWarning) {
    EXPECT_TRUE(value().isNil());
    folder.write("user", domainName, NSDictionary{{NSString(u"Other"), integer(1)}});
    EXPECT_TRUE(value().isNil());
    EXPECT_TRUE(warnings().empty());
}

TEST_F(Preferences, BothFormsOfPropertyListsAreRead) {
    folder.write("user", domainName, holding(NSString(u"xml")), NSPropertyListXMLFormat_v1_0);
    EXPECT_EQ(value(), NSString(u"xml"));
    folder.write("user", domainName, holding(NSString(u"binary")), NSPropertyListBinaryFormat_v1_0);
    EXPECT_EQ(value(), NSString(u"binary"));
}

TEST_F(Preferences, TheUsersFileComesFirstThenTheSharedOnesThenTheGlobalDomainInTheSameOrder) {
    folder.write("second", ".GlobalPreferences", holding(NSString(u"global second")));
    EXPECT_EQ(value(), NSString(u"global second"));
    folder.write("first", ".GlobalPreferences", holding(NSString(u"global first")));
    EXPECT_EQ(value(), NSString(u"global first"));
    folder.write("user", ".GlobalPreferences", holding(NSString(u"global user")));
    EXPECT_EQ(value(), NSString(u"global user"));
    folder.write("second", domainName, holding(NSString(u"second")));
    EXPECT_EQ(value(), NSString(u"second"));
    folder.write("first", domainName, holding(NSString(u"first")));
    EXPECT_EQ(value(), NSString(u"first"));
    folder.write("user", domainName, holding(NSString(u"user")));
    EXPECT_EQ(value(), NSString(u"user"));
}

TEST_F(Preferences, AFileWithoutTheKeyLeavesItToTheNext) {
    folder.write("user", domainName, NSDictionary{{NSString(u"Other"), integer(1)}});
    folder.write("first", domainName, holding(NSString(u"first")));
    EXPECT_EQ(value(), NSString(u"first"));
}

TEST_F(Preferences, ValuesAreReadAtTheMomentOfUse) {
    for (int i = 0; i < 20; ++i) {
        folder.write("user", domainName, holding(integer(i)));
        EXPECT_EQ(value(), integer(i));
    }
    std::filesystem::remove(folder.write("user", domainName, NSDictionary::dictionary()));
    EXPECT_TRUE(value().isNil());
}

TEST_F(Preferences, AnOldFileIsReadAgainOnceItChanges) {
    const std::string path = folder.write("user", domainName, holding(integer(1)));
    EXPECT_EQ(value(), integer(1));
    EXPECT_EQ(value(), integer(1));
    folder.write("user", domainName + std::string(".new"), holding(integer(2)));
    std::filesystem::rename(folder.path() + "/user/preferences/" + domainName + ".new.plist", path);
    EXPECT_EQ(value(), integer(2));
}

TEST_F(Preferences, TheFoldersHaveTheStandardPlacesWithoutVariables) {
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_CONFIG_DIRS");
    const char* home = getenv("HOME");
    const std::string before = home ? home : "";
    setenv("HOME", folder.path().c_str(), 1);
    folder.write(".config", domainName, holding(NSString(u"home")));
    EXPECT_EQ(value(), NSString(u"home"));
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(value(), NSString(u"home")) << "relative folders do not count";
    home ? setenv("HOME", before.c_str(), 1) : unsetenv("HOME");
}

TEST_F(Preferences, ADomainNameCannotLeadToAnotherFolder) {
    folder.write("user", "inside/x", holding(NSString(u"below")));
    folder.write("user", "../../x", holding(NSString(u"above")));
    folder.write("user", ".GlobalPreferences", holding(NSString(u"global")));
    for (const char16_t* name : {u"inside/x", u"../x", u"../../x", u"/x", u"x/", u""}) {
        EXPECT_TRUE(CFPreferencesCopyAppValue(key(), name).isNil()) << NSString(name).utf8();
        EXPECT_TRUE(preferencesOfDomain(name).isNil());
    }
    EXPECT_TRUE(CFPreferencesCopyAppValue(key(), NSString(std::u16string(u"x\0y", 3))).isNil());
}

TEST_F(Preferences, NilKeysAndDomainsHaveNoValue) {
    folder.write("user", domainName, holding(integer(1)));
    bool flag = true;
    EXPECT_TRUE(CFPreferencesCopyAppValue({}, domain()).isNil());
    EXPECT_TRUE(CFPreferencesCopyAppValue(key(), {}).isNil());
    EXPECT_FALSE(CFPreferencesGetAppBooleanValue({}, domain(), &flag));
    EXPECT_FALSE(flag);
}

TEST_F(Preferences, ADomainNameLongerThanAnyFilesHasNoValueAndNoWarning) {
    EXPECT_TRUE(CFPreferencesCopyAppValue(key(), NSString(std::u16string(5000, u'x'))).isNil());
    EXPECT_TRUE(warnings().empty());
}

TEST_F(Preferences, ADamagedFileCountsAsEmptyAndIsWarnedOfOnce) {
    const std::string path = folder.writeBytes("user", domainName, "<plist><dict>");
    folder.write("first", domainName, holding(NSString(u"first")));
    EXPECT_EQ(value(), NSString(u"first"));
    EXPECT_EQ(value(), NSString(u"first"));
    ASSERT_EQ(warnings().size(), 1u);
    EXPECT_EQ(warnings()[0].rfind("Preferences " + path + " cannot be read: ", 0), 0u) << warnings()[0];
}

TEST_F(Preferences, AFileWhoseRootIsNoDictionaryCountsAsEmptyAndIsWarnedOfOnce) {
    const std::string path = folder.writeBytes("user", domainName, "<plist><array/></plist>");
    EXPECT_TRUE(value().isNil());
    EXPECT_TRUE(value().isNil());
    ASSERT_EQ(warnings().size(), 1u);
    EXPECT_EQ(warnings()[0], "Preferences " + path + " cannot be read: it holds no dictionary");
}

TEST_F(Preferences, AFolderOrPipeOfTheNameIsNotOpened) {
    const std::string path = folder.path() + "/user/preferences/" + domainName + ".plist";
    std::filesystem::create_directories(folder.path() + "/user/preferences");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(value().isNil());
    ASSERT_EQ(warnings().size(), 1u);
    EXPECT_EQ(warnings()[0], "Preferences " + path + " cannot be read: it is no file");
}

TEST_F(Preferences, ADomainAsAWholeJoinsItsPlacesAndIsNilWithoutAny) {
    EXPECT_TRUE(preferencesOfDomain(domain()).isNil());
    folder.write("user", ".GlobalPreferences", holding(NSString(u"global")));
    EXPECT_TRUE(preferencesOfDomain(domain()).isNil());
    folder.write("first", domainName, NSDictionary{{key(), integer(1)}, {NSString(u"Other"), integer(2)}});
    folder.write("user", domainName, holding(integer(3)));
    const NSDictionary expected = {{key(), integer(3)}, {NSString(u"Other"), integer(2)}};
    EXPECT_EQ(preferencesOfDomain(domain()), expected);
}

TEST_P(BooleanForm, IsReadOrRejected) {
    folder.write("user", domainName, holding(GetParam().stored), NSPropertyListBinaryFormat_v1_0);
    bool flag = !GetParam().isValid;
    EXPECT_EQ(CFPreferencesGetAppBooleanValue(key(), domain(), &flag), GetParam().value);
    EXPECT_EQ(flag, GetParam().isValid);
    EXPECT_EQ(CFPreferencesGetAppBooleanValue(key(), domain(), nullptr), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BooleanForm,
    testing::Values(
        BooleanCase{"True", NSNumber::numberWithBool(true), true, true},
        BooleanCase{"False", NSNumber::numberWithBool(false), true, false},
        BooleanCase{"One", integer(1), true, true}, BooleanCase{"Zero", integer(0), true, false},
        BooleanCase{"Negative", integer(-7), true, true},
        BooleanCase{"Real", NSNumber::numberWithDouble(0.5), true, true},
        BooleanCase{"YES", NSString(u"YES"), true, true}, BooleanCase{"yes", NSString(u"yes"), true, true},
        BooleanCase{"True text", NSString(u"True"), true, true},
        BooleanCase{"1 text", NSString(u"1"), true, true}, BooleanCase{"NO", NSString(u"NO"), true, false},
        BooleanCase{"FALSE", NSString(u"FALSE"), true, false},
        BooleanCase{"0 text", NSString(u"0"), true, false}, BooleanCase{"Y", NSString(u"Y"), false, false},
        BooleanCase{"2 text", NSString(u"2"), false, false},
        BooleanCase{"Blank before", NSString(u" YES"), false, false},
        BooleanCase{"More after", NSString(u"YESterday"), false, false},
        BooleanCase{"Empty", NSString(u""), false, false},
        BooleanCase{"Date", NSDate::dateWithTimeIntervalSinceReferenceDate(1), false, false},
        BooleanCase{"Data", NSData(std::string("1")), false, false},
        BooleanCase{"Array", NSArray({integer(1)}), false, false},
        BooleanCase{"Dictionary", NSDictionary::dictionary(), false, false}));

TEST_P(IntegerForm, IsReadOrRejected) {
    folder.write("user", domainName, holding(GetParam().stored), NSPropertyListBinaryFormat_v1_0);
    bool flag = !GetParam().isValid;
    EXPECT_EQ(CFPreferencesGetAppIntegerValue(key(), domain(), &flag), GetParam().value);
    EXPECT_EQ(flag, GetParam().isValid);
    EXPECT_EQ(CFPreferencesGetAppIntegerValue(key(), domain(), nullptr), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, IntegerForm,
    testing::Values(
        IntegerCase{"Positive", integer(42), true, 42}, IntegerCase{"Negative", integer(-42), true, -42},
        IntegerCase{"Largest", integer(std::numeric_limits<long long>::max()), true,
                    std::numeric_limits<long long>::max()},
        IntegerCase{"Smallest", integer(std::numeric_limits<long long>::min()), true,
                    std::numeric_limits<long long>::min()},
        IntegerCase{"True", NSNumber::numberWithBool(true), true, 1},
        IntegerCase{"False", NSNumber::numberWithBool(false), true, 0},
        IntegerCase{"Whole real", NSNumber::numberWithDouble(-3.0), true, -3},
        IntegerCase{"Text", NSString(u"12"), true, 12},
        IntegerCase{"Signed text", NSString(u"+12"), true, 12},
        IntegerCase{"Negative text", NSString(u"-12"), true, -12},
        IntegerCase{"Beyond signed", NSNumber::numberWithUnsignedInteger(1ULL << 63), false, 0},
        IntegerCase{"Fraction", NSNumber::numberWithDouble(1.5), false, 0},
        IntegerCase{"Real too large", NSNumber::numberWithDouble(9223372036854775808.0), false, 0},
        IntegerCase{"Infinite", NSNumber::numberWithDouble(std::numeric_limits<double>::infinity()), false,
                    0},
        IntegerCase{"Not a number", NSNumber::numberWithDouble(std::numeric_limits<double>::quiet_NaN()),
                    false, 0},
        IntegerCase{"Text with letters", NSString(u"12abc"), false, 0},
        IntegerCase{"Text with blanks", NSString(u" 12"), false, 0},
        IntegerCase{"Text with two signs", NSString(u"+-12"), false, 0},
        IntegerCase{"Text too large", NSString(u"9223372036854775808"), false, 0},
        IntegerCase{"Real text", NSString(u"1.0"), false, 0},
        IntegerCase{"Empty text", NSString(u""), false, 0},
        IntegerCase{"Sign only", NSString(u"+"), false, 0},
        IntegerCase{"Date", NSDate::dateWithTimeIntervalSinceReferenceDate(1), false, 0},
        IntegerCase{"Array", NSArray({integer(1)}), false, 0}));

} // namespace qrv
