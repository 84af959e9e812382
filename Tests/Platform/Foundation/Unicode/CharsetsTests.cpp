#include "Platform/Foundation/Unicode.h"

#include <gtest/gtest.h>

namespace qrv::unicode {
namespace {

struct Sample {
    const char* charset;
    std::string bytes;
    std::u16string text;
};

TEST(UnicodeCharsets, KnowsTheNamesOfTheWeb) {
    for (const char* name : {"utf-8", "UTF8", "latin1", "shift_jis", "x-sjis", "windows-1251", "utf-16"}) {
        EXPECT_TRUE(isCharset(name)) << name;
    }
    for (const char* name : {"", "x-unheard-of", "utf-8,version=1", "../x"})
        EXPECT_FALSE(isCharset(name)) << name;
}

TEST(Charsets, DecodeByName) {
    const Sample samples[] = {
        {"utf-8", "\xC3\xA9", u"é"},
        {"UTF-8", "\xC3\xA9", u"é"},
        {"utf8", "\xF0\x9F\x98\x80", u"😀"},
        {"iso-8859-2", "\xB1", u"ą"},
        {"ISO-8859-15", "\xA4", u"€"},
        {"windows-1251", "\xCF\xF0", u"Пр"},
        {"koi8-r", "\xF0\xD2", u"Пр"},
        {"macintosh", "\x8E", u"é"},
        {"euc-jp", "\xC6\xFC", u"日"},
        {"iso-2022-jp", "\x1B$BF|\x1B(B", u"日"},
        {"big5", "\xA4\xA4", u"中"},
        {"gb18030", "\xD6\xD0", u"中"},
        {"utf-16le", std::string("a\0b\0", 4), u"ab"},
        {"utf-16be", std::string("\0a\0b", 4), u"ab"},
    };
    for (const Sample& sample : samples) {
        EXPECT_EQ(decodeWebText(sample.bytes, sample.charset), sample.text) << sample.charset;
    }
}

TEST(Charsets, NamesMeanWhatTheWebMeansByThem) {
    const Sample samples[] = {
        {"iso-8859-1", "\x80\x93", u"€“"},
        {"ISO-8859-1", "\x80", u"€"},
        {"latin1", "\x80", u"€"},
        {"us-ascii", "\xE9\x80", u"é€"},
        {"iso-8859-9", "\x80\xFD", u"€ı"},
        {"tis-620", "\x80\xA1", u"€ก"},
        {"gb2312", "\xD6\xD0\x81\x40", u"中丂"},
        {"gbk", "\x81\x30\x81\x30", u"\u0080"},
        {"shift_jis", "\x87\x40", u"①"},
        {"sjis", "\x5C\x7E", u"\\~"},
        {"euc-kr", "\x81\x41", u"갂"},
        {"ks_c_5601-1987", "\xB0\xA1", u"가"},
        {"utf-16", std::string("a\0", 2), u"a"},
    };
    for (const Sample& sample : samples) {
        EXPECT_EQ(decodeWebText(sample.bytes, sample.charset), sample.text) << sample.charset;
    }
}

TEST(Charsets, ByteOrderMarkBeatsTheName) {
    EXPECT_EQ(decodeWebText("\xEF\xBB\xBF\xC3\xA9", "windows-1252"), u"é");
    EXPECT_EQ(decodeWebText(std::string("\xFF\xFE\xE9\0", 4), "utf-8"), u"é");
    EXPECT_EQ(decodeWebText(std::string("\xFE\xFF\0\xE9", 4), "utf-8"), u"é");
    EXPECT_EQ(decodeWebText("\xEF\xBB\xBF", ""), u"");
    EXPECT_EQ(decodeWebText(std::string("\xFF\xFE\0\0a\0", 6), ""), std::u16string(u"\0a", 2));
}

TEST(Charsets, OtherMarksAreText) {
    EXPECT_EQ(decodeWebText("+/v8-AGE", ""), u"+/v8-AGE");
    EXPECT_EQ(decodeWebText("\xFB\xEE\x28", "windows-1252"), u"ûî(");
    EXPECT_EQ(decodeWebText("\xDD\x73\x66\x73", "windows-1252"), u"Ýsfs");
}

TEST(Charsets, WithoutANameUTF8IsTriedThenWesternText) {
    for (const char* name : {"", "x-unheard-of", "\xC3\xA9", " utf-16be", "utf-8,version=1", "../../utf-16be",
                             "/tmp/utf-16be", "UTF-16,swap"}) {
        EXPECT_EQ(decodeWebText("\xC3\xA9", name), u"é") << name;
        EXPECT_EQ(decodeWebText("\xE9\x80", name), u"é€") << name;
    }
    EXPECT_EQ(decodeWebText("", ""), u"");
    EXPECT_EQ(decodeWebText("", "utf-8"), u"");
    EXPECT_EQ(decodeWebText("\xC3\xA9", std::string(1'000'000, 'a')), u"é");
}

TEST(Charsets, WhatCannotBeDecodedIsReplaced) {
    EXPECT_EQ(decodeWebText("a\xFF"
                            "b",
                            "utf-8"),
              u"a\uFFFDb");
    EXPECT_EQ(decodeWebText("a\xC3", "utf-8"), u"a\uFFFD");
    EXPECT_EQ(decodeWebText(std::string("a\0b", 3), "utf-16le"), u"a\uFFFD");
    EXPECT_EQ(decodeWebText("\x81\x20", "shift_jis").front(), u'\uFFFD');
}

TEST(Charsets, NullCharactersStay) {
    EXPECT_EQ(decodeWebText(std::string("a\0b", 3), "utf-8"), std::u16string(u"a\0b", 3));
}

TEST(Charsets, TakeLongText) {
    EXPECT_EQ(decodeWebText(std::string(3'000'000, '\xE9'), "windows-1252"), std::u16string(3'000'000, u'é'));
    EXPECT_EQ(decodeWebText(std::string(3'000'000, '\xFF'), "utf-8"), std::u16string(3'000'000, u'\uFFFD'));
}

} // namespace
} // namespace qrv::unicode
