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

} // namespace
} // namespace qrv::engine
