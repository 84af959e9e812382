#include "Source/Tools/batch/Report/Template.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace qrv::batch {
namespace {

TemplateScope texts(std::map<std::string, std::string, std::less<>> texts) {
    return {.texts = std::move(texts), .parts = {}};
}

TEST(Template, TextsAreNoMarkup) {
    EXPECT_EQ(filled("<p title=\"{{a}}\">{{a}}</p>", texts({{"a", "<b>\"&'"}})),
              "<p title=\"&lt;b&gt;&quot;&amp;&#39;\">&lt;b&gt;&quot;&amp;&#39;</p>");
}

TEST(Template, TextsAreNoTemplates) {
    EXPECT_EQ(filled("{{a}}|{{{a}}}", texts({{"a", "{{b}}{{{b}}}"}, {"b", "secret"}})),
              "{{b}}{{{b}}}|{{b}}{{{b}}}");
}

TEST(Template, WhatTheProgramBringsStaysAsItIs) {
    EXPECT_EQ(filled("<style>{{{a}}}</style>", texts({{"a", "a > b {}\n"}})), "<style>a > b {}\n</style>");
}

TEST(Template, MissingTextsAndPartsAreEmpty) {
    EXPECT_EQ(filled("[{{a}}{{{b}}}{{#c}}part{{/c}}]", {}), "[]");
}

TEST(Template, PartsAreRepeatedAndSeeTheTextsAround) {
    TemplateScope scope = texts({{"name", "outer"}, {"other", "same"}});
    scope.parts["list"] = {texts({{"name", "1"}}), texts({{"name", "2"}}), {}};
    EXPECT_EQ(filled("{{#list}}({{name}} {{other}}){{/list}} {{name}}", scope),
              "(1 same)(2 same)(outer same) outer");
}

TEST(Template, PartsOfParts) {
    TemplateScope outer;
    outer.parts["b"] = {texts({{"x", "1"}}), texts({{"x", "2"}})};
    TemplateScope scope;
    scope.parts["a"] = {outer, {}};
    EXPECT_EQ(filled("{{#a}}[{{#b}}{{x}}{{/b}}]{{/a}}{{#b}}no{{/b}}", scope), "[12][]");
}

TEST(Template, WhatDoesNotEndIsRefused) {
    for (const char* text : {"{{a", "{{{a}}", "{{#a}}", "{{#a}}{{/b}}"})
        EXPECT_THROW(filled(text, {}), std::logic_error) << text;
}

TEST(HtmlText, ControlsAndDirectionsAreMadeHarmless) {
    EXPECT_EQ(htmlText("a\x1b[31m\nb\u202Egpj.exe\u2066\u200F\u0085"),
              "a\uFFFD[31m\uFFFDb\uFFFDgpj.exe\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(htmlText(std::string_view("a\0b", 3)), "a\uFFFDb");
}

TEST(HtmlText, OtherLettersStay) {
    EXPECT_EQ(htmlText("Größe 日本 مرحبا"), "Größe 日本 مرحبا");
}

TEST(HtmlText, BytesThatAreNoTextAreReplaced) {
    EXPECT_EQ(htmlText("a\xff\xfe<"), "a\uFFFD\uFFFD&lt;");
}

} // namespace
} // namespace qrv::batch
