#include "Platform/Foundation/Unicode.h"

#include <gtest/gtest.h>

namespace qrv::unicode {
namespace {

TEST(UnicodeWithoutControls, KeepsWhatIsSeen) {
    for (const char16_t* text :
         {u"", u"plain text", u"Größe", u"日本語", u"\U0001F600", u"a\u0301",
          u"\u0645\u06CC\u200C\u062E\u0648\u0627\u0647\u0645", u"\U0001F469\u200D\U0001F467"}) {
        EXPECT_EQ(withoutControls(text), text);
    }
}

TEST(UnicodeWithoutControls, ReplacesWhatMovesOrTurnsATerminal) {
    for (const char16_t* control : {u"\u001B", u"\n", u"\r", u"\t", u"\a", u"\u007F", u"\u009B", u"\u200F",
                                    u"\u202E", u"\u2028", u"\u2029", u"\u2066", u"\uFEFF"}) {
        EXPECT_EQ(withoutControls(std::u16string(u"a") + control + u"b"), u"a\uFFFDb");
    }
    EXPECT_EQ(withoutControls(std::u16string_view(u"\0", 1)), u"\uFFFD");
    const char16_t unpaired[] = {u'a', char16_t(0xD800), u'b', char16_t(0xDC00), 0};
    EXPECT_EQ(withoutControls(unpaired), u"a\uFFFDb\uFFFD");
}

TEST(UnicodeColumns, CountsWideCharactersTwiceAndMarksNotAtAll) {
    EXPECT_EQ(columns(u""), 0u);
    EXPECT_EQ(columns(u"plain"), 5u);
    EXPECT_EQ(columns(u"日本"), 4u);
    EXPECT_EQ(columns(u"Ａ"), 2u);
    EXPECT_EQ(columns(u"ｱ"), 1u);
    EXPECT_EQ(columns(u"a\u0301b"), 2u);
    EXPECT_EQ(columns(u"\U0001F600"), 2u);
    EXPECT_EQ(columns(u"\uFFFD"), 1u);
}

} // namespace
} // namespace qrv::unicode
