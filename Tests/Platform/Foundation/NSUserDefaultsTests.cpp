#include "Platform/Foundation/NSUserDefaults.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Tests/Platform/Foundation/PreferencesFolder.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSString text(const char* bytes) {
    return NSString::stringWithUTF8String(bytes);
}

class UserDefaults : public testing::Test {
protected:
    UserDefaults() { NSProcessInfo::processInfo().setProcessNameForTesting(u"tester"); }

    ~UserDefaults() override {
        defaults.resetForTesting();
        NSProcessInfo::processInfo().setProcessNameForTesting();
        NSProcessInfo::processInfo().setArgumentsForTesting();
    }

    void setArguments(std::vector<id> arguments) {
        NSProcessInfo::processInfo().setArgumentsForTesting(NSArray(std::move(arguments)));
    }

    NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
    PreferencesFolder folder;
};

} // namespace

TEST_F(UserDefaults, TheStandardObjectIsOne) {
    EXPECT_TRUE(defaults.isIdenticalTo(NSUserDefaults::standardUserDefaults()));
    EXPECT_TRUE(as<NSUserDefaults>(defaults));
}

TEST_F(UserDefaults, TheSearchListIsArgumentsOwnDomainGlobalDomainRegistration) {
    defaults.registerDefaults(NSDictionary{{text("k"), text("registered")}});
    EXPECT_EQ(defaults.objectForKey(u"k"), text("registered"));
    folder.write("user", ".GlobalPreferences", NSDictionary{{text("k"), text("global")}});
    EXPECT_EQ(defaults.objectForKey(u"k"), text("global"));
    folder.write("second", "tester", NSDictionary{{text("k"), text("own")}});
    EXPECT_EQ(defaults.objectForKey(u"k"), text("own"));
    setArguments({text("tester"), text("-k"), text("argument")});
    EXPECT_EQ(defaults.objectForKey(u"k"), text("own")) << "arguments are positional until said otherwise";
    defaults.setReadsArgumentDomain(true);
    EXPECT_EQ(defaults.objectForKey(u"k"), text("argument"));
}

TEST_F(UserDefaults, ArgumentsArePairsOfANameWithADashAndAValue) {
    setArguments({text("-k0"), text("stray"), text("-k1"), text("-5"), text("-"), text("-k2"), text("b"),
                  text("-k3")});
    defaults.setReadsArgumentDomain(true);
    EXPECT_TRUE(defaults.objectForKey(u"k0").isNil()) << "the command's own name";
    EXPECT_EQ(defaults.objectForKey(u"k1"), text("-5"));
    EXPECT_EQ(defaults.objectForKey(u"k2"), text("b"));
    EXPECT_TRUE(defaults.objectForKey(u"k3").isNil()) << "without a value";
}

TEST_F(UserDefaults, AMissingOrNilKeyYieldsNil) {
    EXPECT_TRUE(defaults.objectForKey(u"k").isNil());
    EXPECT_TRUE(defaults.objectForKey({}).isNil());
    EXPECT_TRUE(NSUserDefaults().objectForKey(u"k").isNil());
}

TEST_F(UserDefaults, BooleansAreWhatTheValueAnswers) {
    defaults.registerDefaults(
        NSDictionary{{text("number"), NSNumber::numberWithInteger(2)},
                     {text("text"), text("yes please")},
                     {text("other"), text("off")},
                     {text("date"), NSDate::dateWithTimeIntervalSinceReferenceDate(1)}});
    EXPECT_TRUE(defaults.boolForKey(u"number"));
    EXPECT_TRUE(defaults.boolForKey(u"text"));
    EXPECT_FALSE(defaults.boolForKey(u"other"));
    EXPECT_FALSE(defaults.boolForKey(u"date"));
    EXPECT_FALSE(defaults.boolForKey(u"missing"));
}

TEST_F(UserDefaults, TheDictionaryIsTheWholeSearchList) {
    defaults.registerDefaults(NSDictionary{{text("a"), text("registered")}, {text("b"), text("registered")}});
    folder.write("user", ".GlobalPreferences",
                 NSDictionary{{text("b"), text("global")}, {text("c"), text("global")}});
    folder.write("user", "tester", NSDictionary{{text("c"), text("own")}, {text("d"), text("own")}});
    setArguments({text("tester"), text("-d"), text("argument")});
    defaults.setReadsArgumentDomain(true);
    const NSDictionary expected = {{text("a"), text("registered")},
                                   {text("b"), text("global")},
                                   {text("c"), text("own")},
                                   {text("d"), text("argument")}};
    EXPECT_EQ(defaults.dictionaryRepresentation(), expected);
}

TEST_F(UserDefaults, APersistentDomainIsThatDomainAloneAndNilWhenUnknown) {
    folder.write("user", ".GlobalPreferences", NSDictionary{{text("k"), text("global")}});
    defaults.registerDefaults(NSDictionary{{text("k"), text("registered")}});
    EXPECT_TRUE(defaults.persistentDomainForName(u"org.example").isNil());
    folder.write("user", "org.example", NSDictionary{{text("a"), text("b")}});
    const NSDictionary expected = {{text("a"), text("b")}};
    EXPECT_EQ(defaults.persistentDomainForName(u"org.example"), expected);
    EXPECT_TRUE(defaults.persistentDomainForName({}).isNil());
}

TEST_F(UserDefaults, RegisteringAgainReplacesTheSameKeysOnly) {
    defaults.registerDefaults(NSDictionary{{text("a"), text("1")}, {text("b"), text("1")}});
    defaults.registerDefaults(NSDictionary{{text("b"), text("2")}});
    defaults.registerDefaults({});
    EXPECT_EQ(defaults.objectForKey(u"a"), text("1"));
    EXPECT_EQ(defaults.objectForKey(u"b"), text("2"));
}

} // namespace qrv
