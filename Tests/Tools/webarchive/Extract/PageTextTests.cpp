#include "Source/Tools/webarchive/Extract/PageText.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

/// References that begin with "in" are files, those with "#" stay, others are on the web; the frame "f" has a
/// file, and so has one that refers to "in-frame".
std::string rewritten(std::string_view page) {
    const auto file = [](const std::string& reference) {
        return reference.starts_with("in") ? std::optional("F-" + reference) : std::nullopt;
    };
    const auto link = [=](const std::string& reference) {
        if (reference.starts_with('#')) return std::optional<std::string>();
        const auto found = file(reference);
        return found ? found : std::optional("http://w/" + reference);
    };
    return withPageReferences(page, {link, file, [](const std::string& name, const std::string& reference) {
                                         const bool has = name == "f" || reference == "in-frame";
                                         return has ? std::optional<std::string>("FRAME") : std::nullopt;
                                     }});
}

TEST(PageText, ReferencesInAttributesAreReplaced) {
    for (const auto& [page, expected] : {
             std::pair("<img alt=in src=in.png>", "<img alt=in src=\"F-in.png\">"),
             {"<IMG SRC='in'/>", "<IMG SRC=\"F-in\"/>"},
             {"<a href=\"out?a=1&amp;b=2\">in</a>", "<a href=\"http://w/out?a=1&amp;b=2\">in</a>"},
             {"<a href=\"#x\">", "<a href=\"#x\">"},
             {"<image xlink:href=in />", "<image xlink:href=\"F-in\" />"},
             {"<object data=in></object><p data=in>", "<object data=\"F-in\"></object><p data=in>"},
             {"<p data-a=in data-b=out>", "<p data-a=\"F-in\" data-b=out>"},
             {"<p style='a:url(in)'>", "<p style=\"a:url(F-in)\">"},
             {"<p style=\"a:url(&quot;in&quot;)\">", "<p style=\"a:url(&quot;F-in&quot;)\">"},
             {"<style>a{b:url(in)}</style>", "<style>a{b:url(F-in)}</style>"},
             {"<input value=in><form action=in>", "<input value=in><form action=\"F-in\">"},
         }) {
        EXPECT_EQ(rewritten(page), expected);
    }
}

TEST(PageText, TextsAndScriptsStay) {
    for (const char* page :
         {"in", "<p>src=in</p>", "<!-- <img src=in> -->", "<script>'<img src=in>'</script>",
          "<title><img src=in></title>", "<p hidden src>", "\xff<"}) {
        EXPECT_EQ(rewritten(page), page);
    }
    EXPECT_EQ(rewritten("<a href='x"), "<a href=\"http://w/x\"");
}

TEST(PageText, WhatKeepsFilesFromLoadingIsTakenAway) {
    EXPECT_EQ(rewritten("<base href=x target=t>"), "<base  target=t>");
    EXPECT_EQ(rewritten("<meta http-equiv=Content-Security-Policy content=\"img-src x\">"),
              "<meta  content=\"img-src x\">");
    EXPECT_EQ(rewritten("<link integrity=h rel=stylesheet href=in crossorigin>"),
              "<link  rel=stylesheet href=\"F-in\" >");
    EXPECT_EQ(rewritten("<script src=in integrity=a INTEGRITY=b>"), "<script src=\"F-in\"  >");
    EXPECT_EQ(rewritten("<script src=out integrity=h crossorigin></script>"),
              "<script src=\"http://w/out\" integrity=h crossorigin></script>");
    EXPECT_EQ(rewritten("<meta http-equiv=refresh content=\"5; URL=in\"><meta http-equiv=refresh content=5>"),
              "<meta http-equiv=refresh content=\"5; URL=F-in\"><meta http-equiv=refresh content=5>");
}

TEST(PageText, OfPicturesOnlyFilesAreLeft) {
    EXPECT_EQ(rewritten("<img src=in srcset=\"a 1x, in2 2x\">"), "<img src=\"F-in\" srcset=\"F-in2 2x\">");
    EXPECT_EQ(rewritten("<img src=in srcset=\"a 1x\">"), "<img src=\"F-in\" >");
    EXPECT_EQ(rewritten("<img src=a srcset=\"in 2x\">"), "<img  srcset=\"F-in 2x\">");
    EXPECT_EQ(rewritten("<img src=data:x srcset=\"in 2x\">"),
              "<img src=\"http://w/data:x\" srcset=\"F-in 2x\">");
    EXPECT_EQ(rewritten("<source srcset=\"a, b 2x\">"), "<source >");
    EXPECT_EQ(rewritten("<img src=a srcset=\"b 2x\">"), "<img src=\"http://w/a\" srcset=\"http://w/b 2x\">");
}

TEST(PageText, FramesGetTheirFiles) {
    EXPECT_EQ(rewritten("<iframe src=in-frame id=x></iframe>"), "<iframe src=\"FRAME\"  id=x></iframe>");
    EXPECT_EQ(rewritten("<iframe name=f></iframe>"), "<iframe src=\"FRAME\" name=f></iframe>");
    EXPECT_EQ(rewritten("<iframe name=f srcdoc='a' src=b></iframe>"),
              "<iframe src=\"FRAME\" name=f  ></iframe>");
    EXPECT_EQ(rewritten("<iframe src=out></iframe>"), "<iframe src=\"http://w/out\"></iframe>");
    EXPECT_EQ(rewritten("<frame src=in-frame>"), "<frame src=\"FRAME\" >");
    EXPECT_EQ(rewritten("<iframe srcdoc=\"<img src=&quot;in&quot;>\">"),
              "<iframe srcdoc=\"<img src=&quot;F-in&quot;>\">");
}

TEST(PageText, PagesInPagesEndAtADepth) {
    std::string page;
    for (int i = 0; i < 100'000; ++i) page += "<iframe/srcdoc=";
    EXPECT_NE(rewritten(page), "");
}

TEST(PageText, TheFirstBaseCounts) {
    EXPECT_EQ(baseReference("<base target=x><BASE HREF='a&amp;b'><base href=c>"), "a&b");
    EXPECT_EQ(baseReference("<!-- <base href=a> --><p>"), std::nullopt);
}

} // namespace
} // namespace qrv::webarchive
