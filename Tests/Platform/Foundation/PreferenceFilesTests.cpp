#include "Platform/Foundation/PreferenceFiles.h"

#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/PreferencesFolder.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <pwd.h>
#include <thread>
#include <unistd.h>

namespace qrv {

namespace {

std::vector<std::string> warnings;

class PreferenceFiles : public testing::Test {
protected:
    PreferenceFiles() {
        warnings.clear();
        setPreferencesWarning([](const NSString& message) { warnings.push_back(message.utf8()); });
    }

    ~PreferenceFiles() override { setPreferencesWarning(nullptr); }

    std::string write(int number) const {
        return folder.write("user", "a.domain", {{NSString(u"Number"), NSNumber::numberWithInteger(number)}});
    }

    static long long number(const NSDictionary& contents) {
        return as<NSNumber>(contents.objectForKey(NSString(u"Number"))).integerValue();
    }

    /// The path of a link to the target.
    std::string link(const std::string& target) const {
        std::string path = folder.path() + "/link.plist";
        std::filesystem::create_symlink(target, path);
        return path;
    }

    PreferencesFolder folder;
};

} // namespace

TEST_F(PreferenceFiles, AFileThatHasSettledIsReadOnceAndAgainWhenItChanges) {
    const std::string path = write(1);
    std::this_thread::sleep_for(std::chrono::seconds(4));
    const NSDictionary first = readPreferenceFile(path);
    EXPECT_EQ(number(first), 1);
    EXPECT_TRUE(readPreferenceFile(path).isIdenticalTo(first));

    write(2); // of the same length
    EXPECT_EQ(number(readPreferenceFile(path)), 2);
}

TEST_F(PreferenceFiles, AFileThatHasJustChangedIsReadEachTime) {
    const std::string path = write(1);
    const NSDictionary first = readPreferenceFile(path);
    const NSDictionary second = readPreferenceFile(path);
    EXPECT_EQ(first, second);
    EXPECT_FALSE(second.isIdenticalTo(first));
}

TEST_F(PreferenceFiles, AFolderWhoseNameIsNoUTF8IsReadLikeAnyOther) {
    const TemporaryFolder strange;
    setenv("XDG_CONFIG_HOME", (strange.path() / "caf\xE9").c_str(), 1);
    const std::string path = preferenceFiles(u"a.domain")->front();
    strange.write("caf\xE9/preferences/a.domain.plist",
                  "<plist><dict><key>k</key><string>v</string></dict></plist>");
    EXPECT_EQ(readPreferenceFile(path), (NSDictionary{{NSString(u"k"), NSString(u"v")}}));
    EXPECT_EQ(warnings, std::vector<std::string>());
}

TEST_F(PreferenceFiles, AFileThatCannotBeExaminedIsWarnedOfOnce) {
    const std::string path = link("link.plist");
    EXPECT_TRUE(readPreferenceFile(path).isNil());
    EXPECT_TRUE(readPreferenceFile(path).isNil());
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_TRUE(warnings[0].starts_with("Preferences " + path + " cannot be read: ")) << warnings[0];
}

TEST_F(PreferenceFiles, AFileThatCannotBeReadIsWarnedOfOnce) {
    // A regular file to look at, and a failure to read from its beginning, for whatever user.
    const std::string path = link("/proc/self/mem");
    EXPECT_TRUE(readPreferenceFile(path).isNil());
    EXPECT_TRUE(readPreferenceFile(path).isNil());
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_TRUE(warnings[0].starts_with("Preferences " + path + " cannot be read: ")) << warnings[0];
}

TEST_F(PreferenceFiles, WithoutHomeVariableTheUserDatabaseSaysWhereHomeIs) {
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_CONFIG_DIRS");
    const char* home = getenv("HOME");
    const std::string before = home ? home : "";
    unsetenv("HOME");
    const std::vector<std::string> files = *preferenceFiles(u"a.domain");
    if (home) setenv("HOME", before.c_str(), 1);

    const passwd* user = getpwuid(getuid());
    const std::string expected = user ? user->pw_dir : "";
    EXPECT_EQ(files, (std::vector<std::string>{expected + "/.config/preferences/a.domain.plist",
                                               "/etc/xdg/preferences/a.domain.plist"}));
}

} // namespace qrv
