// What the page scripts ask of few elements, or only where a style sheet gives cause, in the real engine:
// whatever has to be found is found, wherever its style comes from. The view is 600 x 400 px.

#include "Tests/Platform/Engine/Scripts/ScriptPage.h"

namespace qrv::engine {
namespace {

/// A way in which a page gives the element #box, which holds .inside, its style.
struct Origin {
    const char* name;
    const char* before; ///< the declarations
    const char* after;
};

constexpr Origin origins[] = {
    {"sheet", "<style>#box{", "}</style><div id=box><div class=inside></div></div>"},
    {"imported sheet", "<style>@import url(\"data:text/css,%23box{",
     "}\")</style><div id=box><div class=inside></div></div>"},
    {"sheet of another origin", "<link rel=stylesheet href=http://site.example/a.css><!--",
     "--><div id=box><div class=inside></div></div>"},
    {"adopted sheet",
     "<div id=box><div class=inside></div></div><script>var own = new CSSStyleSheet();"
     "own.replaceSync(`#box{",
     "}`); document.adoptedStyleSheets = [own]</script>"},
    {"nested rule", "<style>body{@media screen{& #box{",
     "}}}</style><div id=box><div class=inside></div></div>"},
    {"style attribute", "<div id=box style=\"", "\"><div class=inside></div></div>"},
    {"animation", "<style>@keyframes k{from,to{",
     "}}#box{animation:k 9s both}</style>"
     "<div id=box><div class=inside></div></div>"},
    {"open shadow tree", "<div id=box><template shadowrootmode=open><style>:host{",
     "}</style><slot></slot></template><div class=inside></div></div>"},
};

/// The same for styles of which no sheet that can be seen tells.
constexpr Origin closedTree = {"closed shadow tree",
                               "<div id=box><template shadowrootmode=closed><style>:host{",
                               "}</style><slot></slot></template><div class=inside></div></div>"};

class WalksTest : public ScriptPageTest {
protected:
    void SetUp() override {
        ScriptPageTest::SetUp();
        request_ = client().listen(session(), "Fetch.requestPaused", [this](const Json& request) {
            const Json type = Json::object({{"name", "Content-Type"}, {"value", "text/css"}});
            client().send(session(), "Fetch.fulfillRequest",
                          Json::object({{"requestId", request["requestId"]},
                                        {"responseCode", 200},
                                        {"responseHeaders", Json::array({type})},
                                        {"body", NSData(distantSheet_)}}));
        });
    }

    /// The sheet that http://site.example/a.css is.
    void setDistantSheet(const std::string& text) { distantSheet_ = text; }

    void showWith(const Origin& origin, const std::string& declarations) {
        setDistantSheet("#box{" + declarations + "}");
        show("<!DOCTYPE html><style>body{margin:0;height:2000px}.inside{height:300px}</style>" +
             (origin.before + declarations) + origin.after);
    }

    std::string style(const std::string& selector, const std::string& property) {
        return evaluate("getComputedStyle(document.querySelector('" + selector + "')).getPropertyValue('" +
                        property + "')")
            .string();
    }

    void unrollAll() {
        answer(scripts::standStill);
        answer(scripts::unrollScrollers, {true, 2000});
    }

private:
    std::string distantSheet_;
    DevToolsClient::Subscription request_;
};

TEST_F(WalksTest, BoxesThatScrollAreFoundWhereverTheirStyleComesFrom) {
    const auto expectGrown = [this](const Origin& origin, const char* overflow) {
        showWith(origin, std::string("height:100px;overflow") + overflow);
        unrollAll();
        EXPECT_EQ(evaluate("document.querySelector('#box').offsetHeight").integer(), 300)
            << origin.name << overflow;
    };
    for (const Origin& origin : origins) expectGrown(origin, ":auto");
    for (const char* overflow : {":auto", ":scroll", "-x:auto", "-y:scroll"})
        expectGrown(closedTree, overflow);
}

TEST_F(WalksTest, BoxesInShadowTreesAreFound) {
    show("<!DOCTYPE html><body style=height:2000px><div id=host><template shadowrootmode=open><p>"
         "<div id=inner><template shadowrootmode=open><div id=box style='height:100px;overflow:auto'>"
         "<div style=height:300px></div></div></template></div></template></div>");
    unrollAll();
    EXPECT_EQ(
        evaluate("host.shadowRoot.querySelector('#inner').shadowRoot.querySelector('#box').offsetHeight")
            .integer(),
        300);
}

TEST_F(WalksTest, WhatWasAddedIsFoundOnceThePageStandsStillAgain) {
    showWith(origins[0], "height:100px;overflow:auto");
    unrollAll();
    evaluate(
        "document.body.insertAdjacentHTML('beforeend', '<div id=late style=\"height:100px;overflow:auto\">"
        "<div class=inside></div></div>')");
    unrollAll();
    EXPECT_EQ(evaluate("document.querySelector('#late').offsetHeight").integer(), 300);
}

TEST_F(WalksTest, StickyBoxesAndOutlinesAreReleasedWhereverTheirStyleComesFrom) {
    const auto expectReleased = [this](const Origin& origin) {
        showWith(origin, "position:sticky;outline:3px solid rgb(0,0,255);height:300px");
        answer(scripts::releaseBoxes);
        EXPECT_EQ(style("#box", "position"), "relative") << origin.name;
        EXPECT_EQ(style("#box", "box-shadow"), "rgb(0, 0, 255) 0px 0px 0px 3px") << origin.name;
    };
    for (const Origin& origin : origins) expectReleased(origin);
    expectReleased(closedTree);
}

TEST_F(WalksTest, StickyBoxesInShadowTreesAreReleased) {
    show("<!DOCTYPE html><div id=host><template shadowrootmode=open><p "
         "style=position:sticky></template></div>");
    answer(scripts::releaseBoxes);
    EXPECT_EQ(evaluate("getComputedStyle(host.shadowRoot.querySelector('p')).position").string(), "relative");
}

TEST_F(WalksTest, ShadowsOfUnderlinedTextAreFoundWhereverTheirStyleComesFrom) {
    for (const Origin& origin : origins) {
        showWith(origin, "text-shadow:1px 1px red");
        evaluate("document.querySelector('.inside').innerHTML = '<u>text</u>'");
        EXPECT_TRUE(answer(scripts::easePaint, {0}).boolean()) << origin.name;
        EXPECT_EQ(style("u", "opacity"), "0.999") << origin.name;
    }
}

TEST_F(WalksTest, PaintThatCostsIsFoundWhereverItComesFrom) {
    for (const Origin& origin : origins) {
        for (const char* paint : {"filter:blur(1px)", "box-shadow:1px 1px red", "mix-blend-mode:multiply",
                                  "-webkit-mask:linear-gradient(red,blue)", "backdrop-filter:blur(1px)"}) {
            showWith(origin, paint);
            EXPECT_TRUE(answer(scripts::easePaint, {0}).boolean()) << origin.name << ", " << paint;
        }
    }
    for (const char* content :
         {"<svg><filter id=f></filter><rect filter=url(#f)></rect></svg>",
          R"(<style>p{--f:blur(1px);filter:var(--f)}</style><p>text)",
          R"(<p style='f\69lter:blur(1px)'>text)",
          "<p>text<script>document.querySelector('p').animate({filter: ['blur(1px)', 'blur(2px)']}, 1e9)"
          "</script>"}) {
        show(std::string("<!DOCTYPE html>") + content);
        EXPECT_TRUE(answer(scripts::easePaint, {0}).boolean()) << content;
    }
}

TEST_F(WalksTest, PaintOfClosedShadowTreesIsLeftOutAtHigherLevels) {
    showWith(closedTree, "filter:blur(1px)");
    EXPECT_FALSE(answer(scripts::easePaint, {1}).boolean(true));
    EXPECT_EQ(style("#box", "filter"), "none");
}

// "inherit" can be said in many ways.
TEST_F(WalksTest, HeirsAreFoundWhereverTheirStyleComesFrom) {
    static constexpr char sheet[] = "body{width:400px!important;overflow:visible!important}";
    const auto expectKept = [this](const Origin& origin, const char* declarations) {
        showWith(origin, declarations);
        evaluate("document.body.style.overflow = 'auto'");
        answer(scripts::applyPrintStyle, {sheet, "", "", ""});
        EXPECT_EQ(evaluate("document.body.offsetWidth").integer(), 400);
        EXPECT_EQ(evaluate("document.querySelector('#box').offsetWidth").integer(), 400) << origin.name;
        EXPECT_EQ(style("#box", "overflow-x"), "auto") << origin.name << ", " << declarations;
    };
    // A box in the open tree's stead is a child of the body as well.
    for (const Origin& origin : origins) expectKept(origin, "overflow:inherit");
    for (const char* declarations :
         {"overflow-inline:inherit;overflow-block:inherit", "overflow:var(--none,inherit)",
          "--i:auto;overflow:var(--i);overflow-x:inherit", R"(overflow:inh\65rit)"}) {
        expectKept(origins[0], declarations);
        expectKept(origins[5], declarations);
    }
}

constexpr char narrow[] = "html{width:300px!important}body{width:200px!important}";

TEST_F(WalksTest, ThePrintsSheetIsStrongerThanAnySelector) {
    show("<!DOCTYPE html><html id=h class=c><style>#h#h#h#h#h.c.c{width:500px!important}"
         "html#h>body#b#b#b{width:400px!important}</style><body id=b><p>text");
    EXPECT_TRUE(answer(scripts::applyPrintStyle, {narrow, "", "", ""}).boolean());
    EXPECT_EQ(style("html", "width"), "300px");
    EXPECT_EQ(style("body", "width"), "200px");
    EXPECT_FALSE(evaluate("document.querySelector('style').sheet.cssRules[0] instanceof CSSLayerBlockRule")
                     .boolean(true));
}

// Of layers the first is the strongest, wherever it is.
TEST_F(WalksTest, ThePrintsSheetIsStrongerThanAnyLayer) {
    setDistantSheet("@layer a{body{width:400px!important}}");
    for (const char* layer :
         {"<style>@layer a{body{width:400px!important}}</style>",
          "<style>@media screen{@layer a.b{body{width:400px!important}}}</style>",
          "<style>@import url(\"data:text/css,body{width:400px!important}\") layer;</style>",
          "<link rel=stylesheet href=http://site.example/a.css>",
          "<script>var own = new CSSStyleSheet(); own.replaceSync('@layer a{body{width:400px!important}}');"
          "document.adoptedStyleSheets = [own]</script>"}) {
        show(std::string("<!DOCTYPE html>") + layer + "<p>text");
        ASSERT_EQ(style("body", "width"), "400px") << layer;
        EXPECT_TRUE(answer(scripts::applyPrintStyle, {narrow, "", "", ""}).boolean());
        EXPECT_EQ(style("body", "width"), "200px") << layer;
    }
}

TEST_F(WalksTest, GeneratedBoxesGetTheStrengthToo) {
    show("<!DOCTYPE html><style>#h *::before{content:'a';transition:width 9s!important}</style><html "
         "id=h><p>");
    answer(scripts::applyPrintStyle, {"*,::before,::after{transition:none!important}", "", "", ""});
    EXPECT_EQ(
        evaluate("getComputedStyle(document.querySelector('p'), '::before').transitionDuration").string(),
        "0s");
}

} // namespace
} // namespace qrv::engine
