#include "Platform/Engine/Archive/MissingResources.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST(MissingResources, NothingMissingIsNoText) {
    EXPECT_EQ(MissingResources().description(), "");
}

TEST(MissingResources, AreNamedByKindInTheirOrderOnceEach) {
    MissingResources missing;
    missing.add("Image", "http://a/i.png");
    EXPECT_EQ(missing.description(),
              "the archive does not hold 1 resource that the page asked for: image http://a/i.png");
    missing.add("Font", "http://a/f.woff");
    missing.add("Image", "http://a/i.png");
    missing.add("Stylesheet", "http://a/i.png");
    EXPECT_EQ(missing.description(),
              "the archive does not hold 3 resources that the page asked for: "
              "image http://a/i.png, font http://a/f.woff, style sheet http://a/i.png");
}

TEST(MissingResources, WhatSomethingElseStandsInForDoesNotCount) {
    MissingResources missing;
    for (const char* url : {"http://a/1", "http://a/2"}) missing.add("Image", url);
    missing.remove("Image", "http://a/1");
    missing.remove("Font", "http://a/2");
    EXPECT_THAT(missing.description(), EndsWith("1 resource that the page asked for: image http://a/2"));
    missing.add("Image", "http://a/1");
    EXPECT_THAT(missing.description(), EndsWith(": image http://a/2, image http://a/1"));
}

TEST(MissingResources, SayWhetherImagesAreAmongThem) {
    MissingResources missing;
    missing.add("Font", "http://a/image");
    EXPECT_FALSE(missing.hasImages());
    missing.add("Image", "http://a/1");
    EXPECT_TRUE(missing.hasImages());
    missing.remove("Image", "http://a/1");
    EXPECT_FALSE(missing.hasImages());
}

TEST(MissingResources, EveryTypeHasAName) {
    for (const auto& [type, kind] : {std::pair("Document", "document"),
                                     {"Script", "script"},
                                     {"Media", "video or sound"},
                                     {"XHR", "data"},
                                     {"Fetch", "data"},
                                     {"TextTrack", "text track"},
                                     {"Unheard", "other"}}) {
        MissingResources missing;
        missing.add(type, "http://a/");
        EXPECT_THAT(missing.description(), EndsWith(std::string(": ") + kind + " http://a/"));
    }
}

TEST(MissingResources, WhatIsOnlySentDoesNotCount) {
    MissingResources missing;
    for (const char* type : {"Ping", "CSPViolationReport", "Preflight"}) missing.add(type, "http://a/");
    EXPECT_EQ(missing.description(), "");
}

TEST(MissingResources, WhatTheBrowserAsksForByItselfDoesNotCount) {
    MissingResources missing;
    missing.add("Other", "http://a/favicon.ico");
    EXPECT_EQ(missing.description(), "");
    missing.add("Other", "http://a/icon.png");
    EXPECT_THAT(missing.description(), EndsWith(": other http://a/icon.png"));
    missing.add("Image", "http://a/favicon.ico");
    EXPECT_THAT(missing.description(), EndsWith(", image http://a/favicon.ico"));
}

TEST(MissingResources, ThereMayBeMoreThanAreNamed) {
    MissingResources missing;
    for (int i = 0; i < 30; ++i) missing.add("Image", "http://a/" + std::to_string(i) + ".png");
    const std::string text = missing.description();
    EXPECT_THAT(text, StartsWith("the archive does not hold 30 resources"));
    EXPECT_THAT(text, HasSubstr("http://a/19.png, and more"));
    EXPECT_THAT(text, Not(HasSubstr("20.png")));
}

TEST(MissingResources, TheTextIsBoundedWhateverIsAskedFor) {
    MissingResources missing;
    for (int i = 0; i < 5000; ++i) {
        missing.add("Image", "http://" + std::to_string(i) + "/" + std::string(100'000, i % 2 ? '\n' : 'a'));
    }
    const std::string text = missing.description();
    EXPECT_THAT(text, StartsWith("the archive does not hold at least 1000 resources"));
    EXPECT_LT(text.size(), 5000u);
}

TEST(MissingResources, AddressesAreTextOnOneLine) {
    MissingResources missing;
    missing.add("Image", "odd://h\n2026 [x] y/\x1b[31m\xC3\xA4 %s");
    const std::string text = missing.description();
    EXPECT_THAT(text, EndsWith("image odd://h%0A2026%20[x]%20y/%1B[31m%C3%A4%20%s"));
}

} // namespace
} // namespace qrv::engine
