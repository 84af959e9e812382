// Boxes that scroll, in the real engine. The view is 600 x 400 px.

#include "Platform/Engine/Print/PageReadiness.h"
#include "Tests/Platform/Engine/Scripts/ScriptPage.h"

namespace qrv::engine {
namespace {

class UnrollScrollersTest : public ScriptPageTest {
protected:
    enum Mode { onScreen, onSheets };

    void unroll(Mode mode, int limit = 2000) { answer(scripts::unrollScrollers, {mode == onSheets, limit}); }

    double height(const std::string& selector) {
        return evaluate("document.querySelector('" + selector + "').getBoundingClientRect().height").number();
    }

    double top(const std::string& selector) {
        return evaluate("document.querySelector('" + selector + "').getBoundingClientRect().top").number();
    }

    std::string styleAttribute(const std::string& selector) {
        return evaluate("document.querySelector('" + selector + "').getAttribute('style') || ''").string();
    }
};

constexpr char application[] =
    "<!DOCTYPE html><style>html,body{height:100%;margin:0;overflow:hidden}"
    "#app{height:100vh;display:flex;flex-direction:column}main{flex:1;overflow:auto}main div{height:3000px}"
    "header,footer{height:50px}</style>"
    "<div id=app><header></header><main><div></div></main><footer></footer></div>";

TEST_F(UnrollScrollersTest, ABoxThatFillsTheViewGrowsAndWhatIsAroundItToo) {
    for (const Mode mode : {onScreen, onSheets}) {
        show(application);
        unroll(mode);
        EXPECT_EQ(height("main"), 3000);
        EXPECT_EQ(height("#app"), 3100);
        EXPECT_EQ(top("header"), 0);
        EXPECT_EQ(top("footer"), 3050);
        EXPECT_EQ(evaluate("document.scrollingElement.scrollHeight").number(), 3100);
    }
}

TEST_F(UnrollScrollersTest, TheHeightOfTheDocumentCountsWhatABoxHolds) {
    show(application);
    const PageContents contents = pageContentsFromJson(awaited(scripts::awaitContents, {1000}));
    EXPECT_EQ(contents.documentHeight, 3100);
    EXPECT_EQ(contents.viewHeight, 400);
}

TEST_F(UnrollScrollersTest, BoxesBesideTheTextOfAPageThatScrollsStayOnTheScreen) {
    show("<!DOCTYPE html><style>.s{height:300px;overflow:auto}.s div{height:900px}</style>"
         "<div class=s><div></div></div><p style='height:1000px'>");
    unroll(onScreen);
    EXPECT_EQ(height(".s"), 300);
    unroll(onSheets);
    EXPECT_EQ(height(".s"), 900);
}

TEST_F(UnrollScrollersTest, SmallBoxesStayOnTheScreenOfAPageThatDoesNotScroll) {
    show("<!DOCTYPE html><style>.s{height:100px;overflow:auto}.s div{height:900px}</style>"
         "<div class=s><div></div></div>");
    unroll(onScreen);
    EXPECT_EQ(height(".s"), 100);
    unroll(onSheets);
    EXPECT_EQ(height(".s"), 900);
}

TEST_F(UnrollScrollersTest, WhatIsHiddenOnPurposeStaysHidden) {
    show("<!DOCTYPE html><style>div{height:100px}i{display:block;height:150px}</style>"
         "<div style='overflow:hidden'><i></i></div>"
         "<div style='overflow:auto;visibility:hidden'><i></i></div>"
         "<div style='overflow:auto;scroll-snap-type:y mandatory'><i></i></div>"
         "<div style='overflow:auto;position:absolute'><i></i></div>");
    unroll(onSheets);
    EXPECT_EQ(
        evaluate("[...document.querySelectorAll('div')].map((box) => box.offsetHeight).join()").string(),
        "100,100,100,100");
}

TEST_F(UnrollScrollersTest, AFillingBoxThatHidesALittleStaysAsItIs) {
    const std::string page = "<!DOCTYPE html><style>body{margin:0}main{height:400px;overflow:hidden}</style>";
    show(page + "<main><div style='height:590px'></div></main>");
    unroll(onScreen);
    EXPECT_EQ(height("main"), 400);
    show(page + "<main><div style='height:610px'></div></main>");
    unroll(onScreen);
    EXPECT_EQ(height("main"), 610);
}

TEST_F(UnrollScrollersTest, AFixedBoxStandsInTheDocumentAfterwards) {
    show("<!DOCTYPE html><style>main{position:fixed;left:100px;right:50px;top:20px;bottom:0;overflow:auto}"
         "div{height:2000px}</style><main><div></div></main>");
    unroll(onScreen);
    EXPECT_EQ(top("main"), 20);
    EXPECT_EQ(height("main"), 2000);
    EXPECT_EQ(evaluate("(({left, width}) => left + ' ' + width)(document.querySelector('main')"
                       ".getBoundingClientRect())")
                  .string(),
              "100 450");
    EXPECT_EQ(evaluate("document.scrollingElement.scrollHeight").number(), 2020);
}

TEST_F(UnrollScrollersTest, AFrameOfTheSameOriginGrows) {
    show("<!DOCTYPE html><style>body{margin:0}iframe{width:100%;height:400px;border:0;display:block}</style>"
         "<iframe srcdoc='<!DOCTYPE html><style>body{margin:0}</style><p "
         "style=height:1500px;margin:0>'></iframe>");
    unroll(onScreen);
    EXPECT_EQ(height("iframe"), 1500);
}

TEST_F(UnrollScrollersTest, LinesAreWrappedOnSheetsOnly) {
    show("<!DOCTYPE html><pre style='overflow:auto;margin:0'>" + std::string(500, 'x') + "</pre>");
    const double line = height("pre");
    unroll(onScreen);
    EXPECT_EQ(height("pre"), line);
    unroll(onSheets);
    EXPECT_GT(height("pre"), 5 * line);
    EXPECT_LE(
        evaluate("document.querySelector('pre').scrollWidth - document.querySelector('pre').clientWidth")
            .number(),
        0);
}

TEST_F(UnrollScrollersTest, TablesAreShownSmaller) {
    std::string cells;
    for (int n = 0; n < 30; ++n) cells += "<td>" + std::string(8, 'x');
    show("<!DOCTYPE html><div style='overflow-x:auto'><table border><tr>" + cells + "</table></div>");
    unroll(onSheets);
    EXPECT_LE(
        evaluate("document.querySelector('div').scrollWidth - document.querySelector('div').clientWidth")
            .number(),
        1);
}

TEST_F(UnrollScrollersTest, WhatIsNotReachedInTimeStays) {
    show("<!DOCTYPE html><style>.s{height:100px;overflow:auto}.s div{height:900px}</style>"
         "<div class=s><div></div></div><pre style='overflow:auto'>" +
         std::string(500, 'x') + "</pre>");
    const std::string before = evaluate("document.documentElement.outerHTML").string();
    unroll(onSheets, 0);
    EXPECT_EQ(evaluate("document.documentElement.outerHTML").string(), before);
}

TEST_F(UnrollScrollersTest, APageWithoutBoxesThatScrollIsNotTouched) {
    show("<!DOCTYPE html><body><div style='overflow:auto'><p>text</p></div><pre>short</pre>");
    const std::string before = evaluate("document.documentElement.outerHTML").string();
    unroll(onScreen);
    unroll(onSheets);
    EXPECT_EQ(evaluate("document.documentElement.outerHTML").string(), before);
}

TEST_F(UnrollScrollersTest, APageWithoutARootHasNothingToUnroll) {
    show("<!DOCTYPE html><script>document.documentElement.remove()</script>");
    unroll(onSheets);
    EXPECT_TRUE(log_.empty()) << log_.front();
}

} // namespace
} // namespace qrv::engine
