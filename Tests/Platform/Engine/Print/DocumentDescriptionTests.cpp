#include "Platform/Engine/Print/DocumentDescription.h"

#include "Platform/Engine/DevTools/Json.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

DocumentDescription described(const Json& answer) {
    return documentDescriptionFromJson(answer);
}

TEST(DocumentDescription, HasWhatThePageAnswers) {
    const DocumentDescription description =
        described(Json::object({{"language", "zh-Hant-TW"}, {"headings", Json::array({"One", "Two"})}}));
    EXPECT_EQ(description.language, "zh-Hant-TW");
    EXPECT_THAT(description.headings, ElementsAre("One", "Two"));
}

TEST(DocumentDescription, TargetsHaveANameAndAPlace) {
    const auto target = [](const Json& name, const Json& top) {
        return Json::object({{"name", name}, {"top", top}});
    };
    const Json targets = Json::array({target("", 0), target("a", 12.5), target(5, 1), target("b", "1"), 7});
    EXPECT_THAT(described(Json::object({{"targetsInView", targets}})).targetsInView,
                ElementsAre(Pair("", 0), Pair("a", 12.5)));
}

TEST(DocumentDescription, WhatIsMissingIsEmpty) {
    for (const Json& answer : {Json(), Json(5), Json::object({{"language", nullptr}, {"headings", "x"}})}) {
        EXPECT_EQ(described(answer).language, "");
        EXPECT_THAT(described(answer).headings, IsEmpty());
        EXPECT_THAT(described(answer).targetsInView, IsEmpty());
    }
}

TEST(DocumentDescription, WhatIsNoLanguageTagIsNone) {
    for (const std::string& text :
         {std::string("de CH"), std::string("(de)"), std::string("dé"), std::string(65, 'a')}) {
        EXPECT_EQ(described(Json::object({{"language", text}})).language, "") << text;
    }
}

TEST(DocumentDescription, HeadingsOfOtherKindsAreLeftOut) {
    EXPECT_THAT(described(Json::object({{"headings", Json::array({"One", 2, nullptr})}})).headings,
                ElementsAre("One"));
}

TEST(FrameDescription, HasWhatTheFrameAnswers) {
    const Json heading = Json::object({{"text", "One"}, {"level", 9e9}, {"left", 3}, {"top", 4}});
    const Json unseen = Json::object({{"text", "Two"}, {"level", -1}});
    const Json anchors = Json::array({Json::object({{"name", "a"}, {"left", 1}, {"top", 2}}),
                                      Json::object({{"name", "b"}}), Json::object({{"left", 1}})});
    const PDFFrame frame = frameDescriptionFromJson(
        Json::object({{"path", "0.1"},
                      {"width", 300},
                      {"contents", Json::array({heading, Json::object({{"frame", 2}}), 7, unseen})},
                      {"anchors", anchors}}));
    EXPECT_EQ(frame.path, "0.1");
    EXPECT_EQ(frame.width, 300);
    ASSERT_EQ(frame.contents.size(), 3u);
    const auto first = std::get<PDFFrame::Heading>(frame.contents[0]);
    EXPECT_EQ(first.heading.text, "One");
    EXPECT_EQ(first.heading.level, 1000);
    EXPECT_EQ(first.place->top, 4);
    EXPECT_EQ(std::get<std::size_t>(frame.contents[1]), 2u);
    EXPECT_EQ(std::get<PDFFrame::Heading>(frame.contents[2]).heading.level, 1);
    EXPECT_FALSE(std::get<PDFFrame::Heading>(frame.contents[2]).place);
    ASSERT_EQ(frame.anchors.size(), 2u);
    EXPECT_EQ(frame.anchors.at("a")->left, 1);
    EXPECT_FALSE(frame.anchors.at("b"));
}

} // namespace
} // namespace qrv::engine
