// What the page scripts do and answer in the real engine. MeasureTests has the measurements.

#include "Platform/Engine/Scripts/PageScripts.h"

#include "Platform/Engine/Print/DocumentDescription.h"
#include "Platform/Engine/Print/PageReadiness.h"
#include "Platform/Foundation/Base64.h"
#include "Tests/Platform/Engine/JsonText.h"
#include "Tests/Platform/Engine/Scripts/ScriptPage.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using std::chrono::steady_clock;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

/// 700 x 30 px
constexpr char widePicture[] = "iVBORw0KGgoAAAANSUhEUgAAArwAAAAeCAIAAABBk1rYAAAAhUlEQVR42u3WQQ0AAAjEsJOCGnQiF"
                               "QkgoEkV7LXUNADAKRIAAKYBADANAIBpAABM"
                               "AwBgGgAA0wAAYBoAANMAAJgGAMA0AACmAQAwDQCAaQAAMA0AgGkAAEwDAGAaAADTAACYBgDANAAAm"
                               "AYAwDQAAKYBADANAIBpAABMAwBgGgAATAMA"
                               "8LVQlvkORt/OkgAAAABJRU5ErkJggg==";

/// A page that is not told in time does not answer: this is longer than the world's patience.
constexpr int farLimit = 20'000;

class PageScriptsTest : public ScriptPageTest {
protected:
    std::string style(const std::string& selector, const std::string& property) {
        return evaluate("getComputedStyle(document.querySelector('" + selector + "')).getPropertyValue('" +
                        property + "')")
            .string();
    }
};

// Each file, also one that nothing calls.
TEST_F(PageScriptsTest, AreProgramsOfTheEnginesLanguage) {
    show("");
    client().call(session(), "Runtime.enable", {}, patience);
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(WEB2PDF_PAGE_SCRIPTS)) {
        if (entry.path().extension() != ".js") continue;
        ++count;
        std::ifstream file(entry.path());
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const Json params = Json::object(
            {{"expression", text}, {"sourceURL", entry.path().string()}, {"persistScript", false}});
        const DevToolsReply reply = client().call(session(), "Runtime.compileScript", params, patience);
        EXPECT_TRUE(reply.ok()) << reply.errorMessage;
        EXPECT_FALSE(reply.result.contains("exceptionDetails"))
            << entry.path() << ": " << jsonText(reply.result["exceptionDetails"]);
    }
    client().call(session(), "Runtime.disable", {}, patience);
    EXPECT_GE(count, 16);
}

TEST_F(PageScriptsTest, AScriptThatThrowsSaysWhere) {
    constexpr PageScript broken{
        "broken.js", "// A comment.\n() => {\n    nothing.atAll();\n}\n//# sourceURL=web2pdf/broken.js\n"};
    constexpr PageScript misused{"misused.js",
                                 "() => property('noSuchThing')\n//# sourceURL=web2pdf/misused.js\n"};
    show("");
    EXPECT_FALSE(world().call(broken));
    EXPECT_FALSE(world().await(misused));
    ASSERT_THAT(log_, SizeIs(2));
    EXPECT_EQ(log_[0], "broken.js threw at line 3: ReferenceError: nothing is not defined");
    EXPECT_THAT(log_[1],
                ::testing::MatchesRegex("misused.js threw at line [0-9]+ of shared.js: TypeError: .*"));
    log_.clear();
}

TEST_F(PageScriptsTest, AWorldThatIsLeftIsMadeAnew) {
    show("<title>One</title>");
    EXPECT_EQ(answer(scripts::title).string(), "One");
    show("<title>Two</title>");
    EXPECT_EQ(answer(scripts::title).string(), "Two");
}

TEST_F(PageScriptsTest, ScriptsRunWhereThePagesOwnMayNot) {
    show("<title>One</title><meta http-equiv=Content-Security-Policy content=\"default-src 'none'\">");
    world().stopScripts();
    EXPECT_EQ(answer(scripts::title).string(), "One");
}

TEST_F(PageScriptsTest, ADocumentWithoutAFrameNamesNoOwner) {
    show("<title>One</title>");
    EXPECT_EQ(jsonText(answer(scripts::titleAndOwner)), R"({"title":"One","owner":""})");
}

TEST_F(PageScriptsTest, AnyElementMayBeNamedLikeASharedFunction) {
    show("<title>One</title><img id=property><img id=read><img name=read><iframe name=query></iframe>");
    EXPECT_EQ(answer(scripts::title).string(), "One");
}

/// Elements with the names of the document's properties stand in front of them in the page's own world. The
/// engine spares other worlds that, so the scripts are tried in this one.
class ShadowedDocumentTest : public PageScriptsTest {
protected:
    void SetUp() override {
        PageScriptsTest::SetUp();
        show("<!DOCTYPE html><html style=opacity:0.5><head><title>A page</title></head><body><p>text</p>"
             "<form name=head></form><form name=title></form><img name=body><img name=documentElement>"
             "<img name=scrollingElement><img name=compatMode><img name=contentType><img "
             "name=querySelectorAll>"
             "<img name=createElementNS><img name=getAnimations>");
        ASSERT_EQ(evaluate("document.head.localName").string(), "form");
    }

    Json answerInPagesWorld(const PageScript& script, const std::vector<Json>& arguments = {}) {
        qrv::engine::evaluate(client(), session(), std::string(scripts::shared.source));
        const Json window =
            client()
                .call(session(), "Runtime.evaluate", Json::object({{"expression", "globalThis"}}), patience)
                .result["result"]["objectId"];
        std::vector<Json> values;
        for (const Json& argument : arguments) values.push_back(Json::object({{"value", argument}}));
        const DevToolsReply reply = client().call(session(), "Runtime.callFunctionOn",
                                                  Json::object({{"functionDeclaration", script.source},
                                                                {"objectId", window},
                                                                {"arguments", Json::array(values)},
                                                                {"returnByValue", true},
                                                                {"awaitPromise", true}}),
                                                  patience);
        EXPECT_FALSE(reply.result.contains("exceptionDetails")) << jsonText(reply.result);
        return reply.result["result"]["value"];
    }
};

TEST_F(ShadowedDocumentTest, HasItsTitle) {
    EXPECT_EQ(answerInPagesWorld(scripts::title).string(), "A page");
}

TEST_F(ShadowedDocumentTest, HasItsMeasurements) {
    const Json answer = answerInPagesWorld(scripts::measure);
    EXPECT_TRUE(answer["root"]["hasEffect"].boolean());
    EXPECT_TRUE(answer["body"]["exists"].boolean());
    EXPECT_FALSE(answer["isQuirky"].boolean(true));
    EXPECT_EQ(answer["scroll"]["width"].integer(), 600);
}

TEST_F(ShadowedDocumentTest, IsAwaitedAndDescribed) {
    EXPECT_FALSE(answerInPagesWorld(scripts::awaitContents, {100})["isSingleMedia"].boolean(true));
    EXPECT_TRUE(answerInPagesWorld(scripts::describe).isObject());
    answerInPagesWorld(scripts::standStill);
    EXPECT_EQ(answerInPagesWorld(scripts::conclude).integer(-1), 0);
}

TEST_F(ShadowedDocumentTest, GetsTheStyleSheetInItsHead) {
    EXPECT_TRUE(answerInPagesWorld(scripts::applyPrintStyle, {"p{color:red}", "", "", ""}).boolean());
    EXPECT_EQ(evaluate("document.querySelector('style').parentNode.localName").string(), "head");
}

// Loading

TEST_F(PageScriptsTest, TheTitleIsThatOfTheDocumentWhateverElementsAreCalled) {
    show("<title> A  page </title><img name=title><form name=title></form>");
    EXPECT_EQ(answer(scripts::title).string(), "A page");
    show("<p>no title");
    EXPECT_EQ(answer(scripts::title).string(), "");
}

TEST_F(PageScriptsTest, PagesAreEnteredByAddressesOnly) {
    show("");
    EXPECT_FALSE(answer(scripts::enter, {"http://[half"}).boolean(true));
    EXPECT_TRUE(answer(scripts::enter, {"about:blank#there"}).boolean());
}

TEST_F(PageScriptsTest, APageCannotCloseItself) {
    world().runInNewDocuments(scripts::keepOpen, PageWorld::Place::pagesWorld);
    show("<script>close = () => {}; close(); window.close()</script><p>text");
    EXPECT_EQ(evaluate("window.close(); document.querySelector('p').textContent").string(), "text");
}

TEST_F(PageScriptsTest, AssignmentsToTheDomainChangeNothingAndDoNotThrow) {
    world().runInNewDocuments(scripts::ignoreDomain, PageWorld::Place::pagesWorld);
    show("<script>document.domain = 'example.org'; var reached = document.domain</script>");
    EXPECT_EQ(evaluate("'reached:' + reached").string(), "reached:");
}

// Readiness

TEST_F(PageScriptsTest, AQuietPageIsReady) {
    show("<!DOCTYPE html><body style=margin:0><div style=height:1500px></div>");
    EXPECT_EQ(jsonText(awaited(scripts::awaitContents, {farLimit})),
              R"({"documentHeight":1500,"viewHeight":400,"isSingleMedia":false,"failedImages":[]})");
}

TEST_F(PageScriptsTest, EveryFieldOfTheContentsIsRead) {
    show("<!DOCTYPE html><img src='data:,x' srcset='data:,y 2x, http://site.example/a.png 1x'>"
         "<div style=height:1500px></div>");
    const PageContents contents = pageContentsFromJson(awaited(scripts::awaitContents, {100}));
    EXPECT_GT(contents.documentHeight, 1500);
    EXPECT_EQ(contents.viewHeight, 400);
    EXPECT_FALSE(contents.isSingleMedia);
    show(base64Decode(widePicture).value(), "image/png");
    EXPECT_TRUE(pageContentsFromJson(awaited(scripts::awaitContents, {100})).isSingleMedia);
}

TEST_F(PageScriptsTest, ImagesThatCannotBeHadAreToldWithWhatTheyWereChosenFrom) {
    show("<!DOCTYPE html><base href=https://site.example/><picture><source srcset='data:image/png,x, "
         "wide.png 2x'>"
         "<img src=small.png srcset='data:image/png,y 1x'></picture><img src=data:image/png,alone>");
    const PageContents contents = pageContentsFromJson(awaited(scripts::awaitContents, {500}));
    ASSERT_THAT(contents.failedImages, SizeIs(1));
    EXPECT_EQ(contents.failedImages[0].chosen, "data:image/png,x");
    EXPECT_THAT(contents.failedImages[0].candidates,
                ElementsAre("https://site.example/wide.png", "https://site.example/small.png"));
}

TEST_F(PageScriptsTest, WhatIsOnItsWayIsAwaitedUpToTheLimit) {
    show("<p>text");
    evaluate("document.body.append(Object.assign(new Image(), {src: 'http://site.example/never.png'}))");
    const auto start = steady_clock::now();
    awaited(scripts::awaitContents, {1000});
    EXPECT_GE(steady_clock::now() - start, std::chrono::milliseconds(990));
}

/// Something that is added to a page that has loaded, and what happens to it while it is awaited.
struct Arrival {
    const char* name;
    const char* content;
    const char* event;

    friend void PrintTo(const Arrival& arrival, std::ostream* stream) { *stream << arrival.name; }
};

class AwaitedArrivalTest : public PageScriptsTest, public ::testing::WithParamInterface<Arrival> {};

TEST_P(AwaitedArrivalTest, EndsTheWait) {
    show("<p>text");
    evaluate("document.body.innerHTML = '" + std::string(GetParam().content) + "'; setInterval(() => {" +
             GetParam().event + "}, 50); 0");
    EXPECT_TRUE(awaited(scripts::awaitContents, {farLimit}).isObject());
}

constexpr char image[] = "<img src=http://site.example/a.png>";
constexpr char film[] = "<video src=http://site.example/a.mp4></video>";
constexpr char filmWithSource[] = "<video><source src=http://site.example/a.mp4></video>";

constexpr Arrival arrivals[] = {
    {"ImageThatFails", image, "document.querySelector('img').dispatchEvent(new Event('error'))"},
    {"ImageThatArrives", image, "document.querySelector('img').dispatchEvent(new Event('load'))"},
    {"FilmThatIsEmptied", film, "document.querySelector('video').dispatchEvent(new Event('emptied'))"},
    {"FilmThatIsSuspended", film, "document.querySelector('video').dispatchEvent(new Event('suspend'))"},
    {"FilmThatFails", film, "document.querySelector('video').dispatchEvent(new Event('error'))"},
    {"FilmWhosePictureArrives", film,
     "document.querySelector('video').dispatchEvent(new Event('loadeddata'))"},
    {"FilmWhoseSourceFails", filmWithSource,
     "document.querySelector('source').dispatchEvent(new Event('error'))"},
};

INSTANTIATE_TEST_SUITE_P(PageScripts, AwaitedArrivalTest, ::testing::ValuesIn(arrivals),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_F(PageScriptsTest, ImagesInShadowTreesAreAwaited) {
    show("<p>text");
    evaluate("const tree = document.querySelector('p').attachShadow({mode: 'open'});"
             "tree.innerHTML = '<img src=http://site.example/a.png>'; 0");
    const auto start = steady_clock::now();
    awaited(scripts::awaitContents, {1000});
    EXPECT_GE(steady_clock::now() - start, std::chrono::milliseconds(990));
}

TEST_F(PageScriptsTest, ASinglePictureHasItsNaturalSize) {
    show(base64Decode(widePicture).value(), "image/png");
    evaluate("document.images[0].style = 'max-width:100%;max-height:10px'; 0");
    awaited(scripts::presentMedia, {farLimit});
    EXPECT_EQ(style("img", "width"), "700px");
    EXPECT_EQ(style("img", "max-width"), "none");
    EXPECT_EQ(style("img", "max-height"), "none");
    EXPECT_EQ(evaluate("document.scrollingElement.scrollWidth").integer(), 700);
    EXPECT_EQ(evaluate("document.images[0].getBoundingClientRect().y").integer(), 0);
}

TEST_F(PageScriptsTest, ImagesAreChosenAnewAmongWhatIsHeld) {
    show("<!DOCTYPE html><base href=https://site.example/><picture>"
         "<source media='(min-width: 9000px)' srcset='huge.png 2x, wide.png'><source srcset=data:image/png,x>"
         "<img src=small.png></picture>");
    awaited(scripts::awaitContents, {500});
    answer(scripts::substituteImages, {Json::array({"https://site.example/wide.png"})});
    EXPECT_EQ(evaluate("document.querySelector('picture').outerHTML").string(),
              "<picture><source srcset=\"https://site.example/wide.png \"><source><img></picture>");
}

TEST_F(PageScriptsTest, ImagesOfWhichNothingIsHeldStay) {
    show("<!DOCTYPE html><base href=https://site.example/><img src=small.png srcset='data:image/png,x'>");
    awaited(scripts::awaitContents, {500});
    answer(scripts::substituteImages, {Json::array({"https://site.example/other.png"})});
    EXPECT_EQ(evaluate("document.images[0].outerHTML").string(),
              R"(<img src="small.png" srcset="data:image/png,x">)");
}

TEST_F(PageScriptsTest, PicturesAreThoseOfTheDensity) {
    show("<!DOCTYPE html><base href=https://site.example/>");
    // Later, since what never arrives would keep the page from loading.
    evaluate("document.body.innerHTML = `<style>p{list-style-image:url('a(b')}"
             "p::before{content:image-set('c1' 1x,'c3' 3x)}b{display:none;background:url(hidden)}</style>"
             "<p style=\"background:linear-gradient(red,red),image-set(url(2) type('image/png') 2x,url(1) "
             "1x),url(plain)\">"
             "text<b>x</b><img src=data:,>`");
    const auto pictures = [&](int density) {
        std::string names;
        for (const Json& address : answer(scripts::picturesInUse, {density}).elements()) {
            names += address.string().substr(std::string("https://site.example/").size()) + " ";
        }
        return names;
    };
    EXPECT_EQ(pictures(1), "1 plain a(b c1 ");
    EXPECT_EQ(pictures(2), "2 plain a(b c3 ");
    EXPECT_EQ(pictures(3), pictures(2));
}

TEST_F(PageScriptsTest, AChangedViewIsAwaited) {
    show("<!DOCTYPE html><script>var sizes = []; addEventListener('resize', () => "
         "sizes.push(innerWidth))</script>");
    setView(700, 400);
    awaited(scripts::awaitFrame, {farLimit});
    EXPECT_EQ(evaluate("sizes.join()").string(), "700");
}

TEST_F(PageScriptsTest, ImageSetsAreRenewedAsTheyAre) {
    show("<!DOCTYPE html>");
    evaluate(
        "document.body.innerHTML = `<style>@media screen{p{background-image:image-set(url(1) 1x)!important;"
        "color:red}}</style><p style='background-image:image-set(url(2) 2x)'>text`");
    const std::string all = "document.querySelector('style').sheet.cssRules[0].cssText + "
                            "document.querySelector('p').style.cssText";
    const std::string before = evaluate(all).string();
    answer(scripts::renewImageSets);
    EXPECT_THAT(before, ::testing::HasSubstr("!important"));
    EXPECT_EQ(evaluate(all).string(), before);
}

TEST_F(PageScriptsTest, AHeldViewChangesUnnoticed) {
    world().runInNewDocuments(scripts::watchView, PageWorld::Place::ownWorld);
    show("<!DOCTYPE html><div style=height:3000px></div><script>var events = [];"
         "for (const type of ['resize', 'scroll', 'scrollend'])"
         "addEventListener(type, event => events.push(type + (event.isTrusted ? '' : ' told')))</script>");
    const std::string frames = "new Promise(done => requestAnimationFrame(() => requestAnimationFrame(() => "
                               "setTimeout(() => done(events.splice(0).join()), 0))))";
    setView(600, 500);
    EXPECT_EQ(evaluate(frames).string(), "resize");
    answer(scripts::holdView);
    setView(600, 3000);
    EXPECT_EQ(evaluate(frames).string(), "");
    setView(600, 500);
    evaluate("scrollTo(0, 100)");
    EXPECT_EQ(evaluate(frames).string(), "");
    EXPECT_EQ(evaluate("dispatchEvent(new Event('scroll')); events.splice(0).join()").string(),
              "scroll told");
}

TEST_F(PageScriptsTest, APageIsToldOfItsLastSizeBeforeItsViewIsHeld) {
    world().runInNewDocuments(scripts::watchView, PageWorld::Place::ownWorld);
    show("<!DOCTYPE html><script>var sizes = []; addEventListener('resize', () => sizes.push(innerHeight), "
         "true)"
         "</script>");
    setView(600, 500);
    answer(scripts::holdView);
    EXPECT_THAT(evaluate("sizes.join()").string(), "500");
}

TEST_F(PageScriptsTest, WhatAPageShowsWhenItIsScrolledToIsRevealed) {
    show("<!DOCTYPE html><div style=height:2000px></div><p>there</p><script>var seen = false;"
         "new IntersectionObserver(all => { seen ||= all.some(one => one.isIntersecting) })"
         ".observe(document.querySelector('p'))</script>");
    awaited(scripts::reveal, {farLimit});
    EXPECT_TRUE(evaluate("seen").boolean());
    EXPECT_EQ(evaluate("scrollY").integer(), 0);
}

TEST_F(PageScriptsTest, ImagesThatWaitForScrollingGetIt) {
    show("<!DOCTYPE html><div style=height:2000px></div><img data-src=a.png src=data:image/gif,x alt=picture>"
         "<script>var told = 0; addEventListener('scroll', event => { told += !event.isTrusted }, "
         "true)</script>");
    awaited(scripts::reveal, {farLimit});
    EXPECT_EQ(evaluate("told").integer(), 1);
}

// Each look makes the page longer.
TEST_F(PageScriptsTest, AnEndlessPageIsLookedAtInSomeSteps) {
    show("<!DOCTYPE html><body style=margin:0><div style=height:800px></div><script>var highest = 0;"
         "addEventListener('scroll', () => { highest = Math.max(highest, scrollY);"
         "document.querySelector('div').style.height = scrollY + 2000 + 'px' })</script>");
    const auto start = steady_clock::now();
    awaited(scripts::reveal, {farLimit});
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(evaluate("highest").integer(), 9 * 400);
}

TEST_F(PageScriptsTest, NoOtherPartIsLookedAtWhenTheTimeIsOver) {
    show("<!DOCTYPE html><body style=margin:0><div style=height:9000px></div><script>var highest = 0;"
         "addEventListener('scroll', () => { highest = Math.max(highest, scrollY) })</script>");
    awaited(scripts::reveal, {0});
    EXPECT_EQ(evaluate("highest").integer(), 0);
}

// Also where a sheet is not the document's own: its rules are not to be seen.
TEST_F(PageScriptsTest, ADocumentDoesNotTellThatItsScriptsAreStopped) {
    show("<!DOCTYPE html><style>noscript{display:block}"
         "@media (scripting:none),print{p{color:red}} @media screen and ( SCRIPTING ){p{margin-top:7px}}"
         "@media not (scripting: initial-only){p{margin-left:8px}}</style>"
         "<link rel=stylesheet href='data:text/css,p{}'><noscript>text</noscript><p>text</p>");
    answer(scripts::pretendScripts);
    const Json on = Json::object({{"value", true}});
    client().call(session(), "Emulation.setScriptExecutionDisabled", on, patience);
    setView(601, 400); // has the queries answered anew
    EXPECT_EQ(style("noscript", "display"), "none");
    EXPECT_EQ(style("p", "color"), "rgb(0, 0, 0)");
    EXPECT_EQ(style("p", "margin-top"), "7px");
    EXPECT_EQ(style("p", "margin-left"), "8px");
}

TEST_F(PageScriptsTest, ADocumentThatNeverHadScriptsStaysAsItIs) {
    const Json on = Json::object({{"value", true}});
    client().call(session(), "Emulation.setScriptExecutionDisabled", on, patience);
    show("<!DOCTYPE html><style>@media (scripting: "
         "none){p{color:red}}</style><noscript>text</noscript><p>text");
    answer(scripts::pretendScripts);
    EXPECT_EQ(style("noscript", "display"), "inline");
    EXPECT_EQ(style("p", "color"), "rgb(255, 0, 0)");
}

TEST_F(PageScriptsTest, AnimationsThatFollowTheViewAreTakenBackAtLast) {
    show("<!DOCTYPE html><style>@keyframes appear{from{opacity:0}to{opacity:1}}"
         "p{animation:appear linear both;animation-timeline:view()}</style>"
         "<div style=height:3000px></div><p>text</p>");
    evaluate("new Promise(done => requestAnimationFrame(() => requestAnimationFrame(done)))");
    evaluate("document.body.append(Object.assign(new Image(), {src: 'http://site.example/never.png'}))");
    EXPECT_EQ(style("p", "opacity"), "0");
    EXPECT_EQ(answer(scripts::conclude).integer(), 1);
    EXPECT_EQ(style("p", "opacity"), "1");
}

// Print

TEST_F(PageScriptsTest, EverythingStandsStillWhereItEnds) {
    show("<!DOCTYPE html><style>@keyframes go{from{margin-left:0}to{margin-left:100px}}"
         ".once{animation:go 60s linear both}.ever{animation:go 60s linear infinite}"
         ".scrolled{animation:go linear both;animation-timeline:scroll()}</style><div "
         "style=height:3000px></div>"
         "<p class=once></p><p class=ever></p><p class=scrolled></p>");
    evaluate("scrollTo(0, 1000)");
    answer(scripts::standStill);
    EXPECT_EQ(evaluate("scrollY").integer(), 0);
    EXPECT_EQ(style(".once", "margin-left"), "100px");
    EXPECT_EQ(evaluate("document.querySelector('.ever').getAnimations()[0].playState").string(), "paused");
    EXPECT_EQ(evaluate("document.querySelector('.scrolled').getAnimations()[0].playState").string(),
              "paused");
}

TEST_F(PageScriptsTest, ADocumentIsDescribed) {
    show("<!DOCTYPE html><html lang=de-CH><body style=margin:0><h1>One</h1><div style=height:100px></div>"
         "<h2 style=display:none>Hidden</h2><p role=heading>Two</p><img name=URL><img name=getElementById>"
         "<p id=near style=position:absolute;top:150px>.<p id='a b' style=position:absolute;top:-50px>.<p "
         "id=far "
         "style=position:absolute;top:900px>.<a href=#near>x</a><a href=#far>x</a><a href=#a%20b>x</a><a "
         "href=#>x</a>"
         "<a href=http://site.example/#near>x</a><a href=#none>x</a>");
    const DocumentDescription description = documentDescriptionFromJson(answer(scripts::describe));
    EXPECT_EQ(description.language, "de-CH");
    EXPECT_THAT(description.headings, ElementsAre("One", "Hidden", "Two"));
    EXPECT_THAT(description.targetsInView, ElementsAre(Pair("", 0), Pair("a%20b", 0), Pair("near", 166)));
}

TEST_F(PageScriptsTest, ADocumentTellsItsBreaksWhereItMayHaveMoreThanAFew) {
    show("<!DOCTYPE html><style>p{break-before:page}i{break-inside:avoid}</style><p>1<p "
         "style=break-before:auto>2"
         "<b style=display:block;page-break-after:right>3</b><i style=display:block;break-after:avoid>4</i>");
    const auto breaks = [&](const Json& few) {
        return documentDescriptionFromJson(answer(scripts::describe, {few})).breaks;
    };
    EXPECT_EQ(breaks(5), 2);
    EXPECT_EQ(breaks(1000), 0);
    EXPECT_EQ(breaks(Json()), 0);
}

TEST_F(PageScriptsTest, ADocumentMayHaveNothingToDescribe) {
    show("<!DOCTYPE html><p>text");
    const DocumentDescription description = documentDescriptionFromJson(answer(scripts::describe));
    EXPECT_EQ(description.language, "");
    EXPECT_THAT(description.headings, IsEmpty());
    EXPECT_THAT(description.targetsInView, IsEmpty());
}

// Frames in shadow trees have no number.
TEST_F(PageScriptsTest, AFrameIsDescribedByWhatStandsInIt) {
    show("<!DOCTYPE html><style>*{margin:0}a{display:none!important}</style><h1>One</h1>"
         "<iframe name=length srcdoc='<h2>Inner</h2>'></iframe>"
         "<div><template shadowrootmode=open><iframe></iframe></template></div><iframe></iframe>"
         "<h2 style=display:none>Hidden</h2><p role=heading aria-level=5>Two</p><p role=heading>Three</p><a "
         "href=#>x</a>");
    EXPECT_EQ(evaluate("frames.length").integer(), 2);
    const auto answers = world().callInFrames(scripts::describeFrame, {frameMarker});
    ASSERT_EQ(answers.size(), 4u);
    EXPECT_TRUE(answers[2].answer.isNull()) << jsonText(answers[2].answer);
    std::string page;
    const PDFFrame described = frameDescriptionFromJson(answers[0].answer);
    for (const PDFFrame::Content& content : described.contents) {
        if (const auto* frame = std::get_if<std::size_t>(&content)) {
            page += "frame " + std::to_string(*frame) + ", ";
        } else {
            const auto& heading = std::get<PDFFrame::Heading>(content).heading;
            page += heading.text + " " + std::to_string(heading.level) + ", ";
        }
    }
    EXPECT_EQ(described.path, "");
    EXPECT_THAT(page, ::testing::StrEq("One 1, frame 0, frame 1, Two 5, Three 2, "));
    EXPECT_EQ(described.anchors.count(""), 1u);
    EXPECT_EQ(evaluate("document.querySelectorAll('a').length").integer(), 1);
    EXPECT_EQ(evaluate("frames[0].document.querySelector('a').href + frames[0].innerHeight + ' ' + "
                       "frames[0].document.querySelector('a').getBoundingClientRect().height")
                  .string(),
              "web2pdf-frame:0150 150");
}

constexpr char redSheet[] = "html{color:rgb(255,0,0)!important}body{color:rgb(255,0,0)!important}";
constexpr char greenSheet[] = "html{color:rgb(0,128,0)!important}body{color:rgb(0,128,0)!important}";

TEST_F(PageScriptsTest, ThePrintsStyleSheetIsStrongerThanThePage) {
    show("<!DOCTYPE html><html style='color:blue!important'><style>body{color:blue!important}</style>"
         "<body style='color:blue!important'>");
    EXPECT_TRUE(answer(scripts::applyPrintStyle, {redSheet, "", "", ""}).boolean());
    EXPECT_EQ(style("html", "color"), "rgb(255, 0, 0)");
    EXPECT_EQ(style("body", "color"), "rgb(255, 0, 0)");
    EXPECT_EQ(evaluate("document.body.getAttribute('style')").string(), "color: blue;");
}

TEST_F(PageScriptsTest, ALaterStyleSheetTakesTheFirstOnesPlace) {
    show("<!DOCTYPE html><p>text");
    answer(scripts::applyPrintStyle, {redSheet, "", "", ""});
    answer(scripts::applyPrintStyle, {greenSheet, "", "", ""});
    EXPECT_EQ(style("body", "color"), "rgb(0, 128, 0)");
    EXPECT_EQ(evaluate("document.querySelectorAll('style').length").integer(), 1);
}

TEST_F(PageScriptsTest, AnAdoptedSheetServesWhereStylesAreForbidden) {
    show(
        "<!DOCTYPE html><meta http-equiv=Content-Security-Policy content=\"style-src 'none'\"><p>text<script>"
        "const own = new CSSStyleSheet(); own.replaceSync('p{color:rgb(0,0,255)}');"
        "document.adoptedStyleSheets = [own]</script>");
    EXPECT_TRUE(answer(scripts::applyPrintStyle, {redSheet, "", "", ""}).boolean());
    EXPECT_EQ(style("body", "color"), "rgb(255, 0, 0)");
    EXPECT_EQ(style("p", "color"), "rgb(0, 0, 255)");
    EXPECT_TRUE(answer(scripts::applyPrintStyle, {greenSheet, "", "", ""}).boolean());
    EXPECT_EQ(style("body", "color"), "rgb(0, 128, 0)");
    EXPECT_EQ(style("p", "color"), "rgb(0, 0, 255)");
    EXPECT_EQ(evaluate("document.adoptedStyleSheets.length").integer(), 2);
}

constexpr char boxSheet[] = "html{box-sizing:content-box!important;width:500px!important}"
                            "body{width:400px!important;overflow:visible!important}";

TEST_F(PageScriptsTest, WhatIsSetOnTheRootAndTheBodyIsNotInherited) {
    show("<!DOCTYPE html><style>html{box-sizing:border-box}*,::before{box-sizing:inherit}body{overflow:auto}"
         "body *{width:inherit;overflow:inherit}html::before{content:'a'}</style>"
         "<body><div><p>text</p></div><svg></svg><math></math>");
    answer(scripts::applyPrintStyle, {boxSheet, "", "", ""});
    EXPECT_EQ(style("html", "box-sizing"), "content-box");
    EXPECT_EQ(style("body", "width"), "400px");
    for (const auto* selector : {"body", "div", "p", "svg", "math"}) {
        EXPECT_EQ(style(selector, "box-sizing"), "border-box") << selector;
    }
    EXPECT_EQ(evaluate("getComputedStyle(document.documentElement, '::before').boxSizing").string(),
              "border-box");
    for (const auto* selector : {"div", "p"}) {
        EXPECT_EQ(evaluate("String(document.querySelector('" + std::string(selector) +
                           "').computedStyleMap().get('width'))")
                      .string(),
                  "auto");
        EXPECT_EQ(style(selector, "overflow"), "auto");
    }
}

TEST_F(PageScriptsTest, WhoDoesNotInheritIsLeftAsItIs) {
    show("<!DOCTYPE html><style>body{overflow:auto}</style><body><div></div><p style='width:50%'></p>");
    answer(scripts::applyPrintStyle, {boxSheet, "", "", ""});
    EXPECT_EQ(evaluate("document.querySelector('div').hasAttribute('style')").boolean(true), false);
    EXPECT_EQ(evaluate("document.querySelector('p').getAttribute('style')").string(), "width:50%");
}

TEST_F(PageScriptsTest, ElementsOfForeignKindsHaveNoStyleToKeep) {
    show("<!DOCTYPE html><style>body *{width:inherit}</style><body><script>"
         "document.body.append(document.createElementNS('http://a.example/', 'thing'))</script>");
    EXPECT_TRUE(answer(scripts::applyPrintStyle, {boxSheet, "", "", ""}).boolean());
}

TEST_F(PageScriptsTest, NothingIsOnItsWayToANewValue) {
    show("<!DOCTYPE html><style>body{background:rgb(0,0,255)}div{background:inherit;transition:all 100s}"
         "</style><body><div></div>");
    style("div", "background-color");
    answer(scripts::applyPrintStyle,
           {"*{transition:none!important}body{background:none!important}", "", "", ""});
    EXPECT_EQ(style("div", "background-color"), "rgb(0, 0, 255)");
}

TEST_F(PageScriptsTest, TheStyleSheetStandsInTheRealHead) {
    show("<!DOCTYPE html><html><head><title>T</title></head><body><div id=h></div><form name=head></form>"
         "<img name=documentElement><img name=body>");
    ASSERT_EQ(evaluate("document.head.localName").string(), "form");
    EXPECT_TRUE(answer(scripts::applyPrintStyle, {redSheet, "", "", ""}).boolean());
    EXPECT_EQ(evaluate("document.querySelector('style').parentNode.localName").string(), "head");
    EXPECT_EQ(evaluate("document.querySelector('head').firstChild.localName").string(), "style");
    EXPECT_EQ(style("body", "color"), "rgb(255, 0, 0)");
}

TEST_F(PageScriptsTest, BackgroundImagesMoveToTheirTarget) {
    show("<!DOCTYPE html><style>body{background:linear-gradient(lime,blue)}</style>"
         "<body style='background-image:none'><html style='background-image:none!important'>");
    answer(scripts::applyPrintStyle, {redSheet, "html", "body", "linear-gradient(red,red),"});
    EXPECT_EQ(style("html", "background-image"), "linear-gradient(rgb(255, 0, 0), rgb(255, 0, 0)), none");
    show("<!DOCTYPE html><style>body{background:linear-gradient(lime,blue)}</style><body>");
    answer(scripts::applyPrintStyle, {redSheet, "html", "body", ""});
    EXPECT_EQ(style("html", "background-image"), "linear-gradient(rgb(0, 255, 0), rgb(0, 0, 255))");
}

TEST_F(PageScriptsTest, AnAdoptedSheetServesWhereThereIsNoRoot) {
    show("<!DOCTYPE html><script>document.documentElement.remove()</script>");
    EXPECT_TRUE(answer(scripts::applyPrintStyle, {redSheet, "", "", ""}).boolean());
    EXPECT_EQ(evaluate("document.adoptedStyleSheets.length").integer(), 1);
}

TEST_F(PageScriptsTest, UnderlinedTextWithAShadowBecomesAGroup) {
    show("<!DOCTYPE html><style>.s{text-shadow:1px 1px red}u{color:blue}.half{opacity:.5}</style>"
         "<u class='s own'>text</u><u class=outer><b class=s>text</b></u><i class='s plain'>text</i>"
         "<u class='s half'>text</u><u class='s empty'><i>text</i></u><u class=bare>text</u>");
    EXPECT_TRUE(answer(scripts::easePaint, {0}).boolean());
    for (const auto* selector : {".own", ".outer b", ".empty i"}) {
        EXPECT_EQ(style(selector, "opacity"), "0.999") << selector;
    }
    for (const auto* selector : {".outer", ".plain", ".empty", ".bare"}) {
        EXPECT_EQ(style(selector, "opacity"), "1") << selector;
    }
    EXPECT_EQ(style(".half", "opacity"), "0.5");
    EXPECT_EQ(style(".own", "text-shadow"), "rgb(255, 0, 0) 1px 1px 0px");
}

TEST_F(PageScriptsTest, PaintThatCostsIsLeftOutByLevels) {
    const std::string page =
        "<!DOCTYPE html><p style='text-shadow:1px 2px 3px red;box-shadow:inset 1px 2px 3px 4px blue,2px 2px "
        "5px lime'>text</p><div style='filter:blur(3px);backdrop-filter:blur(2px);mix-blend-mode:multiply;"
        "mask-image:linear-gradient(red,blue)'>text</div>";
    show(page);
    EXPECT_TRUE(answer(scripts::easePaint, {0}).boolean());
    EXPECT_EQ(style("div", "filter"), "blur(3px)");
    EXPECT_TRUE(answer(scripts::easePaint, {1}).boolean());
    EXPECT_EQ(style("p", "text-shadow"), "rgb(255, 0, 0) 1px 2px 0px");
    EXPECT_EQ(style("p", "box-shadow"),
              "rgb(0, 0, 255) 1px 2px 0px 4px inset, rgb(0, 255, 0) 2px 2px 0px 0px");
    for (const auto* property : {"filter", "backdrop-filter", "mask-image"}) {
        EXPECT_EQ(style("div", property), "none") << property;
    }
    EXPECT_EQ(style("div", "mix-blend-mode"), "normal");
    EXPECT_FALSE(answer(scripts::easePaint, {2}).boolean());
    EXPECT_EQ(style("p", "text-shadow"), "none");
    EXPECT_EQ(style("p", "box-shadow"), "none");
}

TEST_F(PageScriptsTest, APageWithoutSuchPaintIsLeftAsItIs) {
    show("<!DOCTYPE html><p><u>text</u>");
    const std::string before = evaluate("document.documentElement.outerHTML").string();
    EXPECT_FALSE(answer(scripts::easePaint, {0}).boolean(true));
    EXPECT_FALSE(answer(scripts::easePaint, {2}).boolean(true));
    EXPECT_EQ(evaluate("document.documentElement.outerHTML").string(), before);
}

TEST_F(PageScriptsTest, OutlinesOfHighBoxesBecomeShadows) {
    show("<!DOCTYPE html><style>div{outline:5px solid rgb(0,0,255);height:101px}.low{height:99px}"
         ".inside{outline-offset:-2px}.shaded{box-shadow:rgb(255,0,0) 1px 2px 3px "
         "4px}.none{outline-width:0}</style>"
         "<div class=high></div><div class=low></div><div class=inside></div><div class=shaded></div>"
         "<div class=none></div><div class=framed style='border-image:linear-gradient(red,blue) 30'></div>");
    answer(scripts::releaseBoxes);
    EXPECT_EQ(style(".framed", "box-decoration-break"), "clone");
    EXPECT_EQ(style(".high", "box-decoration-break"), "slice");
    EXPECT_EQ(style(".high", "outline-style"), "none");
    EXPECT_EQ(style(".high", "box-shadow"), "rgb(0, 0, 255) 0px 0px 0px 5px");
    EXPECT_EQ(style(".low", "outline-style"), "solid");
    EXPECT_EQ(style(".low", "box-shadow"), "none");
    EXPECT_EQ(style(".inside", "box-shadow"), "rgb(0, 0, 255) 0px 0px 0px 5px inset");
    EXPECT_EQ(style(".shaded", "box-shadow"),
              "rgb(0, 0, 255) 0px 0px 0px 5px, rgb(255, 0, 0) 1px 2px 3px 4px");
    EXPECT_EQ(style(".none", "box-shadow"), "none");
}

TEST_F(PageScriptsTest, BoxesThatScrollOrStandAboveAllAreReleased) {
    show("<!DOCTYPE "
         "html><style>body{margin:0}.sticky{position:sticky;bottom:0}dialog,[popover]{max-height:50px!"
         "important;"
         "max-width:100px!important;width:300px;height:300px;margin:0;inset:20px auto auto "
         "30px;padding:0;border:0;"
         "position:fixed}</style><p class=sticky>s</p><dialog>d</dialog><div popover>p</div>"
         "<form class=sticky><input name=style></form>"
         "<script>document.querySelector('dialog').showModal(); "
         "document.querySelector('[popover]').showPopover()"
         "</script>");
    answer(scripts::releaseBoxes);
    EXPECT_EQ(style(".sticky", "position"), "relative");
    EXPECT_EQ(style("form", "position"), "relative");
    EXPECT_EQ(style(".sticky", "bottom"), "0px");
    EXPECT_EQ(evaluate("document.querySelectorAll('dialog:modal,:popover-open').length").integer(), 0);
    for (const char* box : {"dialog", "[popover]"}) {
        EXPECT_EQ(style(box, "display"), "block") << box;
        EXPECT_EQ(style(box, "position"), "fixed") << box;
        EXPECT_EQ(style(box, "left"), "30px") << box;
        EXPECT_EQ(style(box, "top"), "20px") << box;
        EXPECT_EQ(style(box, "width"), "100px") << box;
        EXPECT_EQ(style(box, "height"), "50px") << box;
        EXPECT_EQ(evaluate("document.querySelector('" + std::string(box) + "').style.maxHeight").string(),
                  "none");
        EXPECT_EQ(evaluate("document.querySelector('" + std::string(box) + "').style.maxWidth").string(),
                  "none");
    }
}

} // namespace
} // namespace qrv::engine
