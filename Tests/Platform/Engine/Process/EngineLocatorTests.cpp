#include "Platform/Engine/Process/EngineLocator.h"

#include "Platform/Engine/Process/Sandbox/EngineKind.h"
#include "Tests/Platform/Engine/EngineTestSupport.h"

#include <algorithm>
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
    auto found = locateEngine({.chosen = chosen, .places = {place}, .path = {}});
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, chosen);
}

TEST_F(EngineLocatorTest, AChosenFileThatIsMissingIsNotReplaced) {
    std::string place = add("b", "place");
    EXPECT_FALSE(locateEngine({.chosen = folder("nothing"), .places = {place}, .path = {}}));
    EXPECT_FALSE(locateEngine({.chosen = folder("b"), .places = {place}, .path = {}}));
}

TEST_F(EngineLocatorTest, PlacesComeInOrderAndBeforeThePath) {
    std::string second = add("a", "second");
    std::string third = add("a", "third");
    add("bin", "chromium-headless-shell");
    auto found =
        locateEngine({.chosen = {}, .places = {"", folder("nothing"), second, third}, .path = folder("bin")});
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, second);
}

TEST_F(EngineLocatorTest, ThePathIsSearchedForTheShellFirst) {
    std::string browser = add("one", "chromium");
    std::string shell = add("two", "chromium-headless-shell");
    std::string path = ":relative:" + folder("nothing") + ":" + folder("one") + ":" + folder("two");
    auto found = locateEngine({.chosen = {}, .places = {}, .path = path});
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, shell);

    found = locateEngine({.chosen = {}, .places = {}, .path = folder("one")});
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, browser);
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

TEST_F(EngineLocatorTest, ThePathIsSearchedForTheNamesOfOtherDistributions) {
    for (const char* name : {"chromium-browser", "chromium", "headless_shell", "chrome-headless-shell"}) {
        const std::string newest = add("one", name); // each is preferred to those before
        EXPECT_EQ(locateEngine({.chosen = {}, .places = {}, .path = folder("one")}), newest);
    }
}

TEST_F(EngineLocatorTest, ThePlaceThatTheBuildNamesComesFirst) {
    EXPECT_EQ(EngineSearch::fromEnvironment().places.front(), WEB2PDF_ENGINE_PATH);
}

TEST_F(EngineLocatorTest, HeadlessShellsAreLookedForBeforeFullBrowsers) {
    const auto places = EngineSearch::fromEnvironment().places;
    EXPECT_TRUE(std::is_partitioned(places.begin() + 1, places.end(), [](const std::string& place) {
        return engineKind(place) == EngineKind::headlessShell;
    }));
    EXPECT_NE(std::find(places.begin(), places.end(), "/usr/lib/chromium/chromium"), places.end());
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
