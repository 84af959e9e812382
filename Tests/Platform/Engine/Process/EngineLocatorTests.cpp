#include "Platform/Engine/Process/EngineLocator.h"

#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <fstream>
#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

class EngineLocatorTest : public ::testing::Test {
protected:
    std::string add(const std::string& folder, const std::string& name) {
        std::filesystem::create_directory(directory_.path() / folder);
        return directory_.addScript(folder + "/" + name, "");
    }

    std::string folder(const std::string& name) const { return (directory_.path() / name).string(); }

    OpenDirectory directory_;
};

TEST_F(EngineLocatorTest, TheChosenFileBeatsEverything) {
    std::string chosen = add("a", "mine");
    std::string place = add("b", "place");
    auto found = locateEngine({.chosen = chosen, .places = {{place, true}}, .path = {}});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, chosen);
    EXPECT_TRUE(found->isHeadlessShell);
}

TEST_F(EngineLocatorTest, AChosenFileThatIsMissingIsNotReplaced) {
    std::string place = add("b", "place");
    EXPECT_FALSE(locateEngine({.chosen = folder("nothing"), .places = {{place, true}}, .path = {}}));
    EXPECT_FALSE(locateEngine({.chosen = folder("b"), .places = {{place, true}}, .path = {}}));
}

TEST_F(EngineLocatorTest, AChosenBrowserIsToldFromTheShellByItsName) {
    EXPECT_FALSE(locateEngine(only(add("a", "chromium")))->isHeadlessShell);
    EXPECT_TRUE(locateEngine(only(add("a", "chromium-headless-shell")))->isHeadlessShell);
}

TEST_F(EngineLocatorTest, PlacesComeInOrderAndBeforeThePath) {
    std::string second = add("a", "second");
    std::string third = add("a", "third");
    add("bin", "chromium-headless-shell");
    auto found = locateEngine({.chosen = {},
                               .places = {{folder("nothing"), true}, {second, false}, {third, true}},
                               .path = folder("bin")});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, second);
    EXPECT_FALSE(found->isHeadlessShell);
}

TEST_F(EngineLocatorTest, ThePathIsSearchedForTheShellFirst) {
    std::string browser = add("one", "chromium");
    std::string shell = add("two", "chromium-headless-shell");
    std::string path = ":relative:" + folder("nothing") + ":" + folder("one") + ":" + folder("two");
    auto found = locateEngine({.chosen = {}, .places = {}, .path = path});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, shell);
    EXPECT_TRUE(found->isHeadlessShell);

    found = locateEngine({.chosen = {}, .places = {}, .path = folder("one")});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, browser);
    EXPECT_FALSE(found->isHeadlessShell);
}

TEST_F(EngineLocatorTest, FilesThatCanNotBeExecutedArePassedOver) {
    std::string data = add("one", "chromium");
    std::filesystem::permissions(data, std::filesystem::perms::owner_read);
    std::filesystem::create_directories(directory_.path() / "two/chromium");
    EXPECT_FALSE(locateEngine({.chosen = {}, .places = {}, .path = folder("one") + ":" + folder("two")}));
}

TEST_F(EngineLocatorTest, RelativeEntriesOfThePathArePassedOver) {
    add("bin", "chromium");
    auto before = std::filesystem::current_path();
    std::filesystem::current_path(directory_.path());
    auto found = locateEngine({.chosen = {}, .places = {}, .path = "bin:./bin:"});
    std::filesystem::current_path(before);
    EXPECT_FALSE(found);
}

TEST_F(EngineLocatorTest, TheEnvironmentNamesTheChosenFile) {
    ::setenv("WEB2PDF_ENGINE", "/some/engine", 1);
    EngineSearch search = EngineSearch::fromEnvironment();
    ::unsetenv("WEB2PDF_ENGINE");
    EXPECT_EQ(search.chosen, "/some/engine");
    EXPECT_EQ(EngineSearch::fromEnvironment().chosen, "");
}

} // namespace
} // namespace qrv::engine
