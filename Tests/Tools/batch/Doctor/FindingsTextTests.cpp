#include "Source/Tools/batch/Doctor/FindingsText.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;
using testing::Not;

const Findings sample{
    {"engine", "program", Mark::ok, "is there", {}, {{"path", std::string("/a")}}},
    {"fonts", "Thai", Mark::note, "no font", "Install it."},
    {"fonts", "Latin", Mark::problem, "no font", "Install that.\nOr this."},
};

TEST(FindingsText, HasABlockForEachAreaAndALineForEachFinding) {
    EXPECT_EQ(textOf(sample, false), "engine\n"
                                     "  ok       program  is there\n"
                                     "\n"
                                     "fonts\n"
                                     "  note     Thai     no font\n"
                                     "                    → Install it.\n"
                                     "  problem  Latin    no font\n"
                                     "                    → Install that.\n"
                                     "                    → Or this.\n"
                                     "\n"
                                     "Conversions do not work here as they must: 1 problem, 1 note.\n");
}

TEST(FindingsText, ColoursAreAroundTheMarksOnly) {
    EXPECT_THAT(textOf(sample, true), HasSubstr("  \033[1;31mproblem\033[0m  Latin"));
    EXPECT_THAT(textOf(sample, false), Not(HasSubstr("\033")));
}

TEST(FindingsText, WhatComesFromOutsideCanDoNothingToATerminal) {
    const Findings hostile{{"a\033[2J", "b\n", Mark::note, "c\x9b\r\xE2\x80\xAE", "d\a"}};
    const std::string text = textOf(hostile, false);
    EXPECT_THAT(text, HasSubstr("a\uFFFD[2J\n  note     b\uFFFD  c"));
    for (const char* control : {"\033", "\r", "\a", "\x9b", "\xE2\x80\xAE"})
        EXPECT_THAT(text, Not(HasSubstr(control)));
}

TEST(FindingsText, OnlyProblemsKeepConversionsFromWorking) {
    EXPECT_FALSE(isFit(sample));
    EXPECT_TRUE(isFit({sample[0], sample[1]}));
    EXPECT_TRUE(isFit({}));
    EXPECT_THAT(textOf({sample[0]}, false), HasSubstr("\nConversions work here: 0 problems, 0 notes.\n"));
}

TEST(FindingsText, JsonHasTheSameFieldsForEachFindingBeforeItsFacts) {
    EXPECT_EQ(
        jsonTextOf({sample[0], sample[1]}),
        R"({"fit":true,"problems":0,"notes":1,"findings":[)"
        R"({"area":"engine","check":"program","mark":"ok","text":"is there","advice":null,"path":"/a"},)"
        R"({"area":"fonts","check":"Thai","mark":"note","text":"no font","advice":"Install it."}]})");
}

} // namespace
} // namespace qrv::batch
