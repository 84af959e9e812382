#include "Platform/Engine/Archive/ReferenceRewriter.h"

#include "Platform/Foundation/NSDate.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

std::string rewritten(std::string_view text, ReferenceSyntax syntax = ReferenceSyntax::markup) {
    return withReplacedReferences(text, syntax, {"file:///", "file://localhost/"}, "http://s/");
}

TEST(ReferenceRewriter, ReferencesInAttributesAreReplaced) {
    for (const auto& [text, expected] : {
             std::pair("<img src=\"file:///a b.png\">", "<img src=\"http://s/a b.png\">"),
             {"<img src='file:///a.png'/>", "<img src='http://s/a.png'/>"},
             {"<IMG ALT=x SRC = file:///a.png>", "<IMG ALT=x SRC = http://s/a.png>"},
             {"<img srcset=\"file:///a 1x, file://localhost/b 2x\">",
              "<img srcset=\"http://s/a 1x, http://s/b 2x\">"},
             {"<p style=\"background:url('file:///a')\">", "<p style=\"background:url('http://s/a')\">"},
             {"<image xlink:href=\"file:///a\"/>", "<image xlink:href=\"http://s/a\"/>"},
             {"<img data-src=\"file:///a\">", "<img data-src=\"http://s/a\">"},
         }) {
        EXPECT_EQ(rewritten(text), expected);
    }
}

TEST(ReferenceRewriter, StylesAndScriptsInAPageAreReplacedIn) {
    EXPECT_EQ(rewritten("<style>p{background:url(file:///a)}</STYLE>file:///b"),
              "<style>p{background:url(http://s/a)}</STYLE>file:///b");
    EXPECT_EQ(rewritten("<script>if (1 < 2) load('file:///a')</script><p>file:///b"),
              "<script>if (1 < 2) load('http://s/a')</script><p>file:///b");
}

TEST(ReferenceRewriter, WhatIsShownStays) {
    for (const char* text : {"file:///a", "<p>file:///a</p>", "<p title=\"file:///a\" alt='file:///b'>",
                             "<input value=file:///a>", "<!-- src=\"file:///a\" --> x", "a < src=file:///a",
                             "<title>\"file:///a\"</title>", "<p hidden src>file:///a"}) {
        EXPECT_EQ(rewritten(text), text);
    }
}

TEST(ReferenceRewriter, SheetsAndScriptsAreReplacedInAnywhere) {
    EXPECT_EQ(rewritten("@import 'file:///a'; p{background:url(file:///b)}", ReferenceSyntax::anywhere),
              "@import 'http://s/a'; p{background:url(http://s/b)}");
    EXPECT_EQ(rewritten("file:///a", ReferenceSyntax::none), "file:///a");
}

TEST(ReferenceRewriter, OtherReferencesStay) {
    for (const char* text : {"<img src=\"http://a/file:/b\">", "<img src=a.png>", "<a href=\"#x\">"}) {
        EXPECT_EQ(rewritten(text), text);
    }
    EXPECT_EQ(withReplacedReferences("<img src=file:///a>", ReferenceSyntax::markup, {}, "x"),
              "<img src=file:///a>");
}

TEST(ReferenceRewriter, BrokenMarkupIsKeptByteForByte) {
    for (const char* text :
         {"",           "<",         "<a",       "<a ",      "<a href",  "<a href=",     "<a href=\"x",
          "<a href='",  "<!--",      "<!-- x",   "</",       "</p",      "<style",       "<style>",
          "<style>x</", "<a / = >x", "<a =x=y>", "<a\"b'c>", "<p><<b>>", "\xff\xfe<\x01"}) {
        EXPECT_EQ(rewritten(text), text);
    }
}

TEST(ReferenceRewriter, TakesTimeInProportionToTheText) {
    for (const char* part : {"<", "<a", "<a ", "=", "<style>", "</", "<!--", "<a b='", "file:///"}) {
        std::string text = "<style>";
        while (text.size() < 1'000'000) text += part;
        const NSDate start = NSDate::date();
        rewritten(text);
        EXPECT_LT(NSDate::date().timeIntervalSinceReferenceDate() - start.timeIntervalSinceReferenceDate(), 3)
            << part;
    }
}

TEST(ReferenceRewriter, TheSyntaxIsThatOfTheType) {
    const auto syntaxOf = [](const char* type) { return referenceSyntax(MIMEType(type)); };
    for (const char* type : {"text/html", "Text/HTML; charset=utf-8", "image/svg+xml"}) {
        EXPECT_EQ(syntaxOf(type), ReferenceSyntax::markup) << type;
    }
    for (const char* type : {"text/css", "text/css;charset=utf-8", "application/x-javascript"}) {
        EXPECT_EQ(syntaxOf(type), ReferenceSyntax::anywhere) << type;
    }
    for (const char* type : {"text/plain", "image/png", "application/json", ""}) {
        EXPECT_EQ(syntaxOf(type), ReferenceSyntax::none) << type;
    }
}

} // namespace
} // namespace qrv::engine
