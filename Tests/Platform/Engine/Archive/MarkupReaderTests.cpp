#include "Platform/Engine/Archive/MarkupReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

/// "name attribute=[value] attribute {text}" of each tag.
std::vector<std::string> tagsOf(std::string_view text) {
    std::vector<std::string> lines;
    MarkupReader reader(text);
    while (const auto tag = reader.next()) {
        std::string line = tag->name;
        for (const auto& [name, value, whole] : tag->attributes) {
            line += " " + std::string(name.in(text));
            if (value) line += "=[" + std::string(value->in(text)) + "]";
        }
        if (tag->text.start < tag->text.end) line += " {" + std::string(tag->text.in(text)) + "}";
        lines.push_back(line);
    }
    return lines;
}

TEST(MarkupReader, FindsTagsWithTheirAttributes) {
    EXPECT_THAT(tagsOf("<!DOCTYPE html><IMG Src = 'a\"b' alt=x/y hidden><br/><a\nhref=\"\"b=c>t</a>"),
                testing::ElementsAre("img Src=[a\"b] alt=[x/y] hidden", "br", "a href=[] b=[c]"));
}

TEST(MarkupReader, PassesCommentsAndTexts) {
    EXPECT_THAT(tagsOf("<!-- <a> --><!--><b><![CDATA[<c>]]><title><d></title><textarea><e></textarea>"
                       "<script>'<f>'</SCRIPT ><style>g</style>1 < 2<3"),
                testing::ElementsAre("b", "title {<d>}", "textarea {<e>}", "script {'<f>'}", "style {g}"));
}

TEST(MarkupReader, ElementsMayBeEmptyInXML) {
    EXPECT_THAT(tagsOf("<script src='a'/><title/><iframe src=\"b\" /><p>"),
                testing::ElementsAre("script src=[a]", "title", "iframe src=[b]", "p"));
    EXPECT_THAT(tagsOf("<iframe src=b/><p></iframe><i>"), testing::ElementsAre("iframe src=[b/] {<p>}", "i"));
}

TEST(MarkupReader, TellsWhereAnAttributeStands) {
    const std::string_view text = "<a  href = 'x' b=y c>";
    const auto tag = MarkupReader(text).next();
    ASSERT_TRUE(tag);
    ASSERT_EQ(tag->attributes.size(), 3u);
    EXPECT_EQ(tag->nameRange.in(text), "a");
    EXPECT_EQ(tag->attributes[0].whole.in(text), "href = 'x'");
    EXPECT_EQ(tag->attributes[1].whole.in(text), "b=y");
    EXPECT_EQ(tag->attributes[2].whole.in(text), "c");
}

TEST(MarkupReader, BrokenMarkupEndsWithTheText) {
    EXPECT_THAT(tagsOf("<a href='x"), testing::ElementsAre("a href=[x]"));
    EXPECT_THAT(tagsOf("<a href="), testing::ElementsAre("a href=[]"));
    EXPECT_THAT(tagsOf("<style>x</styl"), testing::ElementsAre("style {x</styl}"));
    EXPECT_THAT(tagsOf("<a / = >"), testing::ElementsAre("a ="));
    for (const char* text : {"", "<", "</", "</p", "<!--", "<!-- <a>", "<![CDATA[<a>", "<1>", "\xff<\x01"}) {
        EXPECT_THAT(tagsOf(text), testing::IsEmpty()) << text;
    }
}

} // namespace
} // namespace qrv::engine
