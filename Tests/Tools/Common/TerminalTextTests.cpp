#include "Source/Tools/Common/TerminalText.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

TEST(TerminalText, IsHarmless) {
    EXPECT_EQ(shown("größe 日本 %s"), "größe 日本 %s");
    EXPECT_EQ(shown("a\x1b[31m\r\nb\xff\xc2\x9bz"), "a\uFFFD[31m\uFFFD\uFFFDb\uFFFD\uFFFDz");
}

TEST(TerminalText, IsCutAtAColumn) {
    EXPECT_EQ(shownWithin("abcd", 4), "abcd");
    EXPECT_EQ(shownWithin("abcde", 4), "abc…");
    EXPECT_EQ(shownWithin("äöüä", 4), "äöüä");
    EXPECT_EQ(shownWithin("日本", 4), "日本");
    EXPECT_EQ(shownWithin("日本語", 5), "日本…");
    EXPECT_EQ(shownWithin("日本語", 4), "日…");
    EXPECT_EQ(shownWithin("abe\u0301cd", 4), "abe\u0301…");
    EXPECT_EQ(columnsOf(shownWithin(std::string(100'000, 'x'), 30)), 30u);
}

} // namespace
} // namespace qrv
