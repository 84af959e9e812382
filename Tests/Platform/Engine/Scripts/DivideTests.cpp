// Which documents divide.js divides, and what showPart.js shows of them, in the real engine.

#include "Platform/Engine/Scripts/PageScripts.h"
#include "Tests/Platform/Engine/Scripts/ScriptPage.h"

namespace qrv::engine {
namespace {

/// Boxes of 100 px, numbered from 0.
std::string boxes(int count, const std::string& attributes = "") {
    std::string html;
    for (int i = 0; i < count; ++i)
        html += "<div class=box " + attributes + ">" + std::to_string(i) + "</div>";
    return html;
}

constexpr char plainStyle[] = "<!DOCTYPE html><style>body{margin:0}.box{height:100px}</style>";

class DivideTest : public ScriptPageTest {
protected:
    /// The number of parts of 1,000 px, of which a sheet has 200.
    std::int64_t parts(const std::string& body) {
        show(plainStyle + body);
        answer(scripts::standStill);
        return answer(scripts::divide, {1000, 200}).integer();
    }

    /// The boxes that are displayed, by their numbers.
    std::string shown(int part, int last) {
        answer(scripts::showPart, {part, last});
        return evaluate("[...document.querySelectorAll('.box')].filter(one => one.checkVisibility())"
                        ".map(one => one.textContent).join(' ')")
            .string();
    }
};

TEST_F(DivideTest, PartsTogetherAreTheDocument) {
    ASSERT_EQ(parts(boxes(25)), 3);
    EXPECT_EQ(shown(0, 2), "0 1 2 3 4 5 6 7 8 9");
    EXPECT_EQ(shown(1, 2), "10 11 12 13 14 15 16 17 18 19");
    EXPECT_EQ(shown(2, 2), "20 21 22 23 24");
    EXPECT_EQ(shown(0, 2), "0 1 2 3 4 5 6 7 8 9");
}

TEST_F(DivideTest, AShortDocumentIsOnePart) {
    EXPECT_EQ(parts(boxes(10)), 1);
    EXPECT_EQ(parts(""), 1);
    EXPECT_EQ(parts(boxes(11)), 2);
}

TEST_F(DivideTest, BreaksCountAsSheets) {
    const std::string breaking = "style='break-after:page'";
    ASSERT_EQ(parts(boxes(8, breaking)), 2);
    EXPECT_EQ(shown(0, 1), "0 1 2 3");
    EXPECT_EQ(shown(1, 1), "4 5 6 7");
    EXPECT_EQ(parts(boxes(8, "style='page-break-before:always'")), 2);
    EXPECT_EQ(parts("<style>.box{break-before:page}</style>" + boxes(8)), 2);
    EXPECT_EQ(parts(boxes(8, "style='break-inside:avoid;word-break:break-all'")), 1);
    EXPECT_EQ(parts(boxes(8, "style='break-after:avoid'")), 1);
    EXPECT_EQ(parts("<main><div><div hidden>" + boxes(8, breaking) + "</div></div>" + boxes(8) + "</main>"),
              1);
    // Somewhere within.
    std::string sections;
    for (int i = 0; i < 8; ++i) sections += "<section><div>" + boxes(1, breaking) + "</div></section>";
    EXPECT_EQ(parts(sections), 2);
    // In a sheet of rules that cannot be read.
    EXPECT_EQ(parts("<link rel=stylesheet href='data:text/css,.box{break-after:page}'>" + boxes(8)), 2);
}

TEST_F(DivideTest, SheetsOfOneSideAreCountedFromTheStart) {
    for (const char* side : {"left", "right", "recto", "verso"}) {
        EXPECT_EQ(parts(boxes(29) + "<p style='break-before:" + std::string(side) + "'>chapter</p>"), 1)
            << side;
    }
}

TEST_F(DivideTest, TheBoxThatHoldsMostIsDivided) {
    ASSERT_EQ(parts("<header class=box>header</header><main><article>" + boxes(20) +
                    "</article><nav class=box>next</nav></main><footer class=box>footer</footer>"),
              2);
    EXPECT_EQ(shown(0, 1), "header 0 1 2 3 4 5 6 7 8 9");
    EXPECT_EQ(shown(1, 1), "10 11 12 13 14 15 16 17 18 19 next footer");
}

TEST_F(DivideTest, LongBoxesAreNotCut) {
    ASSERT_EQ(parts(boxes(3) + "<p class=box style=height:1500px>long</p>" + boxes(12)), 3);
    EXPECT_EQ(shown(0, 2), "0 1 2 long");
    EXPECT_EQ(shown(1, 2), "0 1 2 3 4 5 6 7 8 9");
    EXPECT_EQ(shown(2, 2), "10 11");
}

TEST_F(DivideTest, ATableStaysWhole) {
    std::string rows;
    for (int i = 0; i < 30; ++i) rows += "<tr style=height:100px><td>row";
    ASSERT_EQ(parts("<table class=box style=height:auto>" + rows + "</table>" + boxes(2)), 2);
    EXPECT_EQ(shown(1, 1), "0 1");
    EXPECT_EQ(parts("<table>" + rows + "</table>"), 1);
}

TEST_F(DivideTest, EdgesAreThoseOfTheWhole) {
    ASSERT_EQ(parts("<main style='margin:10px;border:20px solid;padding:30px'>" + boxes(20) + "</main>"), 2);
    const std::string edges = "[marginTop, borderTopWidth, paddingTop, marginBottom, borderBottomWidth, "
                              "paddingBottom].join()";
    const auto ofMain = [&] {
        return evaluate("(({marginTop, borderTopWidth, paddingTop, marginBottom, borderBottomWidth, "
                        "paddingBottom}) => " +
                        edges + ")(getComputedStyle(document.querySelector('main')))")
            .string();
    };
    answer(scripts::showPart, {0, 1});
    EXPECT_EQ(ofMain(), "10px,20px,30px,0px,0px,0px");
    answer(scripts::showPart, {1, 1});
    EXPECT_EQ(ofMain(), "0px,0px,0px,10px,20px,30px");
}

TEST_F(DivideTest, StylesOfTheirOwnComeBack) {
    ASSERT_EQ(parts("<main style='padding-top:1px!important'>" +
                    boxes(20, "style='display:flow-root!important;color:red'") + "</main>"),
              2);
    const auto style = [&](const std::string& selector) {
        return evaluate("document.querySelector('" + selector + "').style.cssText").string();
    };
    answer(scripts::showPart, {1, 1});
    EXPECT_NE(style(".box").find("display: none !important"), std::string::npos);
    EXPECT_NE(style("main").find("padding-top: 0px !important"), std::string::npos);
    answer(scripts::showPart, {0, 1});
    EXPECT_EQ(style(".box"), "display: flow-root !important; color: red;");
    EXPECT_NE(style("main").find("padding-top: 1px !important"), std::string::npos);
}

TEST_F(DivideTest, WhatCountsIsNotDivided) {
    EXPECT_EQ(
        parts("<style>h2::before{counter-increment:c;content:counter(c)}</style><h2>x</h2>" + boxes(30)), 1);
    EXPECT_EQ(parts("<h2 style='counter-reset:c'>x</h2>" + boxes(30)), 1);
    EXPECT_EQ(parts("<ol>" + boxes(30) + "</ol>"), 1);
    // Nothing has the class.
    EXPECT_EQ(parts("<style>.none{counter-reset:c}</style>" + boxes(30)), 3);
}

TEST_F(DivideTest, ACountInASheetOfAnotherOriginIsNoticed) {
    // Its rules cannot be read.
    const std::string foreign = "<link rel=stylesheet href='data:text/css,h2{counter-increment:c}'>";
    EXPECT_EQ(parts(foreign + "<h2>x</h2>" + boxes(30)), 1);
    EXPECT_EQ(parts(foreign + boxes(30)), 3);
}

TEST_F(DivideTest, FloatsAreNotCutOff) {
    ASSERT_EQ(parts(boxes(9) + "<aside style='float:left;width:50px;height:450px'></aside>" + boxes(20)), 3);
    EXPECT_EQ(shown(0, 2), "0 1 2 3 4 5 6 7 8 0 1 2 3 4");
    // Within a box that it reaches out of.
    ASSERT_EQ(parts(boxes(9) + "<div class=box><i style='float:left;width:50px;height:350px'></i></div>" +
                    boxes(20)),
              3);
    EXPECT_EQ(shown(0, 2), "0 1 2 3 4 5 6 7 8  0 1 2");
}

TEST_F(DivideTest, TextBetweenBoxesIsNotLost) {
    EXPECT_EQ(parts(boxes(15) + "text" + boxes(15)), 1);
    ASSERT_EQ(parts("<main>" + boxes(30) + "</main>text"), 1);
}

TEST_F(DivideTest, GeneratedBoxesAreNotRepeated) {
    EXPECT_EQ(parts("<style>main::before{content:'start'}</style><main>" + boxes(30) + "</main>"), 1);
}

TEST_F(DivideTest, BoxesOutOfTheFlowStayWhereTheyAre) {
    const std::string at = "<p class=box style='position:absolute;top:";
    // In the first part.
    ASSERT_EQ(parts(boxes(20) + at + "300px'>placed</p>"), 2);
    EXPECT_EQ(shown(0, 1), "0 1 2 3 4 5 6 7 8 9 placed");
    EXPECT_EQ(shown(1, 1), "10 11 12 13 14 15 16 17 18 19");
    // Somewhere behind it, by themselves and within another box.
    EXPECT_EQ(parts(boxes(20) + at + "1300px'>placed</p>"), 1);
    EXPECT_EQ(parts(boxes(3) + "<div>" + at + "1300px'>placed</p></div>" + boxes(20)), 1);
    EXPECT_EQ(parts(boxes(15) + "<div>" + at + "30px'>placed</p></div>" + boxes(20)), 1);
    // In a box that goes with them.
    EXPECT_EQ(parts(boxes(15) + "<div style=position:relative>" + at + "30px'>placed</p></div>" + boxes(20)),
              4);
    // Not seen at all.
    EXPECT_EQ(parts(boxes(15) + "<div hidden>" + at + "30px'>placed</p></div>" + boxes(20)), 4);
}

TEST_F(DivideTest, FixedBoxesBelongToTheFirstView) {
    ASSERT_EQ(parts(boxes(20) + "<p class=box style='position:fixed;top:0'>fixed</p>"), 2);
    EXPECT_EQ(shown(0, 1), "0 1 2 3 4 5 6 7 8 9 fixed");
    EXPECT_EQ(shown(1, 1), "10 11 12 13 14 15 16 17 18 19");
    EXPECT_EQ(parts(boxes(15) + "<div><p style='position:fixed;top:0'>fixed</p></div>" + boxes(20)), 1);
}

TEST_F(DivideTest, OtherLayoutsStayWhole) {
    for (const char* style :
         {"columns:2", "display:flex;flex-wrap:wrap", "display:grid", "writing-mode:vertical-rl",
          "float:left", "position:absolute", "background:linear-gradient(red,blue)"}) {
        EXPECT_EQ(
            parts("<main style='" + std::string(style) + "'>" + boxes(60, "style=width:590px") + "</main>"),
            1)
            << style;
    }
    EXPECT_EQ(parts("<main id=m></main><script>m.attachShadow({mode:'open'}).innerHTML = '<slot></slot>';"
                    "m.innerHTML = `" +
                    boxes(30) + "`</script>"),
              1);
    show("<svg xmlns='http://www.w3.org/2000/svg' height='5000'/>", "image/svg+xml");
    EXPECT_EQ(answer(scripts::divide, {1000, 200}).integer(), 1);
}

} // namespace
} // namespace qrv::engine
