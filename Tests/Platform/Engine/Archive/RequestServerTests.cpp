#include "Platform/Engine/Archive/RequestServer.h"

#include "Platform/Foundation/NSDate.h"
#include "Tests/Platform/Engine/JsonText.h"
#include "Tests/Platform/Engine/RecordingClient.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class RequestServerTest : public ::testing::Test {
protected:
    RequestServerTest() {
        tracker_.attach(client_, "page", "M");
        server_.setPage("page", "M");
        transport_.sent.clear();
    }

    void serve(const TestArchive& archive) {
        server_.serve(makeArchive(archive), StandInAddress(archive.main.url, "token"));
    }

    /// A request of the engine's; it is known by its address.
    void ask(const std::string& url, const std::string& frame = "M", const std::string& type = "Image",
             const std::string& session = "page") {
        transport_.emit(session, "Fetch.requestPaused",
                        Json::object({{"requestId", url},
                                      {"frameId", frame},
                                      {"resourceType", type},
                                      {"request", Json::object({{"url", url}, {"headers", headers_}})}}));
    }

    void askForDocument(const std::string& url, const std::string& frame = "M") {
        ask(url, frame, "Document");
    }

    void attachFrame(const std::string& frame, const std::string& parent = "M") {
        transport_.emit("page", "Page.frameAttached",
                        Json::object({{"frameId", frame}, {"parentFrameId", parent}}));
    }

    void navigated(const std::string& frame, const std::string& url) {
        transport_.emit("page", "Page.frameNavigated",
                        Json::object({{"frame", Json::object({{"id", frame}, {"url", url}})}}));
    }

    /// What was sent since the last time, in words; the frame tree is answered with the names of the frames.
    std::vector<std::string> take() {
        std::vector<std::string> words;
        while (next_ < transport_.sent.size()) {
            const Json command = transport_.sent[next_++];
            const std::string method = command["method"].string();
            if (method == "Page.getFrameTree" && answersTree_) {
                transport_.reply(command["id"].integer(), Json::object({{"frameTree", tree_}}));
            } else {
                words.push_back(inWords(method, command["params"]));
            }
        }
        return words;
    }

    static inline const std::string treeQuestion = "Page.getFrameTreenull";

    /// Answers the last question after the names.
    void replyWithTree() {
        const auto question =
            std::find_if(transport_.sent.rbegin(), transport_.sent.rend(), [](const Json& command) {
                return command["method"].string() == "Page.getFrameTree";
            });
        ASSERT_NE(question, transport_.sent.rend());
        transport_.reply((*question)["id"].integer(), Json::object({{"frameTree", tree_}}));
    }

    static std::string inWords(const std::string& method, const Json& params) {
        const std::string id = params["requestId"].string();
        if (method == "Fetch.fulfillRequest") {
            return id + " -> " + std::string(params["body"].data().bytes());
        }
        if (method == "Fetch.failRequest") return id + " " + params["errorReason"].string();
        if (method == "Page.setDocumentContent") {
            return params["frameId"].string() + " = " + params["html"].string();
        }
        return method + jsonText(params);
    }

    static Json treeNode(const std::string& frame, const std::string& name, std::vector<Json> children = {}) {
        return Json::object({{"frame", Json::object({{"id", frame}, {"name", name}})},
                             {"childFrames", Json::array(children)}});
    }

    /// Answers the command that was sent last with nothing in particular.
    void acknowledge(std::size_t fromTheEnd = 0) {
        transport_.reply(transport_.sent[transport_.sent.size() - 1 - fromTheEnd]["id"].integer(),
                         Json::object({}));
    }

    NSRunLoop loop_;
    ScriptedTransport transport_;
    DevToolsClient client_{transport_, loop_};
    RecordingClient owner_;
    FrameTracker tracker_{
        owner_,
        {.queryTitle = [](const FrameID&, const std::function<void(NSString)>& answer) { answer({}); },
         .completeMainFrame = [](const std::function<void()>& done) { done(); },
         .storedURL = [](std::string_view url) { return NSURL::URLWithString(NSString::fromUTF8(url)); },
         .haltPage = [] {}}};
    RequestServer server_{client_, tracker_, owner_};
    Json headers_ = Json::object({});
    Json tree_ = treeNode("M", "");
    bool answersTree_ = true;
    std::size_t next_ = 0;
};

TEST_F(RequestServerTest, InterceptsEveryRequest) {
    server_.attach("worker");
    ASSERT_EQ(transport_.sent.size(), 1u);
    const Json command = transport_.sent[0];
    EXPECT_EQ(command["method"].string(), "Fetch.enable");
    EXPECT_EQ(command["sessionId"].string(), "worker");
    EXPECT_EQ(jsonText(command["params"]), R"({"patterns":[{"urlPattern":"*"}],"handleAuthRequests":true})");
}

// Serving

TEST_F(RequestServerTest, ServesThePageAndItsResources) {
    serve({{"http://a/", "page"}, {{"http://a/i.png", "image", "image/png"}}});
    askForDocument("http://a/");
    ask("http://a/i.png");
    EXPECT_THAT(take(), ElementsAre("http://a/ -> page", "http://a/i.png -> image"));
    const Json answer = transport_.sent[1]["params"];
    EXPECT_EQ(answer["responseCode"].integer(), 200);
    EXPECT_THAT(jsonText(answer["responseHeaders"]), HasSubstr("image/png"));
    EXPECT_EQ(server_.asked(), 2u);
    EXPECT_EQ(server_.answered(), 2u);
}

TEST_F(RequestServerTest, AllowsTheOriginThatAsks) {
    serve({{"http://a/", "page"}, {{"http://b/f", "font", "font/woff"}}});
    for (const char* name : {"Origin", "origin"}) {
        headers_ = Json::object({{name, "http://asks"}});
        ask("http://b/f");
        EXPECT_THAT(jsonText(transport_.sent.back()["params"]["responseHeaders"]),
                    HasSubstr(R"({"name":"Access-Control-Allow-Origin","value":"http://asks"})"));
    }
}

TEST_F(RequestServerTest, WhatIsMissingFailsAtOnce) {
    serve({{"http://a/", "page"}});
    ask("http://a/missing.png");
    askForDocument("http://a/missing.html");
    EXPECT_THAT(take(), ElementsAre("http://a/missing.png Failed", "http://a/missing.html Aborted"));
    EXPECT_EQ(server_.answered(), 2u);
}

TEST_F(RequestServerTest, AsksTheSourceForWhatIsMissing) {
    serve({{"odd://a/", "page"}, {{"odd://a/stored", "stored"}}});
    std::vector<std::string> wanted;
    server_.setSource([&](const std::string& url) {
        wanted.push_back(url);
        if (!url.ends_with("there")) return WebResource();
        return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
            NSData(std::string("sourced")), {}, NSString(u""), {}, {});
    });
    ask("http://token.example/stored");
    ask("http://token.example/there");
    askForDocument("http://token.example/too-there");
    ask("http://token.example/not-here");
    ask("http://token.example/sent-there", "M", "Ping");
    EXPECT_THAT(take(),
                ElementsAre("http://token.example/stored -> stored", "http://token.example/there -> sourced",
                            "http://token.example/too-there -> sourced",
                            "http://token.example/not-here Failed",
                            "http://token.example/sent-there Failed"));
    EXPECT_THAT(wanted, ElementsAre("odd://a/there", "odd://a/too-there", "odd://a/not-here"));
    EXPECT_THAT(server_.missing().description(), HasSubstr("odd://a/not-here"));
}

TEST_F(RequestServerTest, TellsTheRecorderWhatIsGiven) {
    PageRecorder recorder;
    server_.setRecorder(&recorder);
    serve({{"odd://a/", "page"}, {{"odd://a/i.png", "image", "image/png"}}});
    askForDocument("http://token.example/");
    ask("http://token.example/i.png");
    ask("http://token.example/missing.png");
    const Json main = Json::object({{"id", "M"}, {"url", "http://token.example/"}});
    const WebArchive recorded = recorder.archive(Json::object({{"frame", main}}), {});
    EXPECT_EQ(recorded.mainResource().URL().absoluteString().utf8(), "odd://a/");
    EXPECT_EQ(recorded.mainResource().data().bytes(), "page");
    ASSERT_EQ(recorded.subresources().count(), 1u);
    EXPECT_EQ(resourceAt(recorded, 0).URL().absoluteString().utf8(), "odd://a/i.png");
}

TEST_F(RequestServerTest, AllowsTheHeadersThatAreAskedFor) {
    serve({{"http://a/", "page"}, {{"http://b/d", "data"}}});
    headers_ = Json::object({{"Origin", "http://a"}, {"Access-Control-Request-Headers", "x-own"}});
    ask("http://b/d", "M", "XHR");
    EXPECT_THAT(jsonText(transport_.sent.back()["params"]["responseHeaders"]),
                HasSubstr(R"({"name":"Access-Control-Allow-Headers","value":"x-own"})"));
}

TEST_F(RequestServerTest, TellsWhatIsMissing) {
    serve({{"odd://a/", "page"}, {{"odd://a/picture", "picture"}}});
    askForDocument("http://token.example/");
    ask("http://token.example/picture");
    EXPECT_EQ(server_.missing().description(), "");
    ask("http://token.example/missing.png");
    askForDocument("http://token.example/missing.html");
    EXPECT_THAT(server_.missing().description(),
                HasSubstr(": image odd://a/missing.png, document odd://a/missing.html"));
}

TEST_F(RequestServerTest, NamesWhatMayStandInForAMissingImage) {
    serve({{"odd://a/", "page"}, {{"odd://a/2x.png", "image"}, {"odd://a/3x.png", "image"}}});
    const std::string site = "http://token.example/";
    ask(site + "1x.png");
    ask(site + "other.png");
    const auto held =
        server_.substitutesFor(site + "1x.png", {site + "1x.png", site + "2x.png", site + "3x.png"});
    EXPECT_THAT(held, ElementsAre(site + "2x.png", site + "3x.png"));
    EXPECT_THAT(server_.missing().description(), ::testing::EndsWith(": image odd://a/other.png"));
    EXPECT_THAT(server_.substitutesFor(site + "other.png", {site + "missing.png"}), IsEmpty());
    EXPECT_THAT(server_.missing().description(), ::testing::EndsWith(": image odd://a/other.png"));
}

TEST_F(RequestServerTest, AnImageThatIsStoredNeedsNoOther) {
    EXPECT_THAT(server_.substitutesFor("http://a/1", {"http://a/1"}), IsEmpty());
    serve({{"http://a/", "page"}, {{"http://a/1", "image"}, {"http://a/2", "image"}}});
    EXPECT_THAT(server_.substitutesFor("http://a/1", {"http://a/1", "http://a/2"}), IsEmpty());
}

TEST_F(RequestServerTest, OtherPicturesMayBeThereWhereSomeAreMissingAndSomeWereNotAskedFor) {
    const std::string site = "http://token.example/";
    EXPECT_FALSE(server_.mayHaveOtherPictures());
    serve({{"odd://a/", "page"},
           {{"odd://a/1.png", "image", "image/png"}, {"odd://a/2.png", "image", "image/png"}}});
    ask(site + "1.png");
    EXPECT_FALSE(server_.mayHaveOtherPictures());
    ask(site + "missing.png");
    EXPECT_TRUE(server_.mayHaveOtherPictures());
    ask(site + "2.png");
    EXPECT_FALSE(server_.mayHaveOtherPictures());
    EXPECT_TRUE(server_.holds(site + "2.png"));
    EXPECT_FALSE(server_.holds(site + "missing.png"));
    server_.dismissPicture(site + "missing.png");
    EXPECT_EQ(server_.missing().description(), "");
}

TEST_F(RequestServerTest, ARefusedNavigationIsNotMissing) {
    serve({{"http://a/", "page"}});
    owner_.allows = false;
    transport_.emit("page", "Page.frameStartedNavigating",
                    Json::object({{"frameId", "M"}, {"url", "http://a/b"}, {"navigationType", "reload"}}));
    askForDocument("http://a/b");
    EXPECT_EQ(server_.missing().description(), "");
}

TEST_F(RequestServerTest, WhatIsAskedBeforeThereIsAnArchiveFails) {
    ask("http://a/i.png");
    askForDocument("http://a/");
    EXPECT_THAT(take(), ElementsAre("http://a/i.png Failed", "http://a/ Aborted"));
}

TEST_F(RequestServerTest, WhatIsTooLargeForTheEngineFails) {
    serve({{"http://a/", "page"}, {{"http://a/big", "as large as can be"}}});
    transport_.nextResult = DevToolsTransport::SendResult::tooLarge;
    ask("http://a/big");
    transport_.nextResult = DevToolsTransport::SendResult::accepted;
    loop_.runUntil([this] { return !transport_.sent.empty() && next_ < transport_.sent.size(); },
                   std::chrono::steady_clock::now() + std::chrono::seconds(20));
    EXPECT_THAT(take(), ElementsAre("http://a/big Failed"));
    EXPECT_EQ(server_.answered(), server_.asked());
}

TEST_F(RequestServerTest, AFileThatNoEngineShowsIsNoDocument) {
    serve({{"http://a/", "bytes", "application/octet-stream"},
           {{"http://a/font", "font", "application/octet-stream"}}});
    askForDocument("http://a/");
    ask("http://a/font");
    EXPECT_THAT(take(), ElementsAre("http://a/ Aborted", "http://a/font -> font"));
    EXPECT_EQ(server_.missing().description(), "");
}

TEST_F(RequestServerTest, ARefusedNavigationIsAborted) {
    serve({{"http://a/", "page"}, {{"http://a/b", "other"}}});
    owner_.allows = false;
    transport_.emit("page", "Page.frameStartedNavigating",
                    Json::object({{"frameId", "M"}, {"url", "http://a/b"}, {"navigationType", "reload"}}));
    ask("http://a/b");
    askForDocument("http://a/b");
    EXPECT_THAT(take(), ElementsAre("http://a/b -> other", "http://a/b Aborted"));
}

TEST_F(RequestServerTest, TheMainFrameMayGoOnToAnotherStoredPage) {
    serve({{"http://a/", "page"}, {{"http://a/b", "other"}}});
    askForDocument("http://a/#part");
    askForDocument("http://a/b");
    EXPECT_THAT(take(), ElementsAre("http://a/#part -> page", "http://a/b -> other"));
}

TEST_F(RequestServerTest, APageWithoutAnAddressIsServedUnderItsStandIn) {
    serve({{"about:blank", "page"}});
    const std::string url = StandInAddress("about:blank", "token").engineURL();
    askForDocument(url);
    EXPECT_THAT(take(), ElementsAre(url + " -> page"));
}

TEST_F(RequestServerTest, AResourceOfAnOddSchemeIsFoundThroughTheStandIn) {
    serve({{"odd://host/page", "page"}, {{"odd://host/i.png", "image"}}});
    askForDocument("http://token.example/page");
    ask("http://token.example/i.png");
    EXPECT_THAT(take(),
                ElementsAre("http://token.example/page -> page", "http://token.example/i.png -> image"));
}

TEST_F(RequestServerTest, AbsoluteReferencesToLocalFilesLeadToTheStandIn) {
    serve({{"file:///d/page", "<img src=\"file:///d/i.png\">file:///d/"},
           {{"file:///d/s.css", "@import 'file:///t.css'", "text/css"},
            {"file:///d/t", "file:///", "text/plain"}}});
    askForDocument("http://token.example/d/page");
    ask("http://token.example/d/s.css");
    ask("http://token.example/d/t");
    EXPECT_THAT(
        take(),
        ElementsAre("http://token.example/d/page -> <img src=\"http://token.example/d/i.png\">file:///d/",
                    "http://token.example/d/s.css -> @import 'http://token.example/t.css'",
                    "http://token.example/d/t -> file:///"));
}

TEST_F(RequestServerTest, ParametersOfATypeDoNotHideTheReferencesInAText) {
    serve({{"file:///d/page", "<img src=\"file:///d/i.png\">", "Text/HTML; charset=utf-8"},
           {{"file:///d/s.css", "@import 'file:///t.css'", "text/css;charset=utf-8"}}});
    askForDocument("http://token.example/d/page");
    ask("http://token.example/d/s.css");
    EXPECT_THAT(take(),
                ElementsAre("http://token.example/d/page -> <img src=\"http://token.example/d/i.png\">",
                            "http://token.example/d/s.css -> @import 'http://token.example/t.css'"));
}

TEST_F(RequestServerTest, WorkersSeeTheMainPagesResources) {
    serve({{"http://a/", "page"}, {{"http://a/w.js", "script"}}});
    server_.attach("worker");
    take();
    ask("http://a/w.js", "", "Script", "worker");
    EXPECT_THAT(take(), ElementsAre("http://a/w.js -> script"));
    EXPECT_EQ(transport_.sent.back()["sessionId"].string(), "worker");
}

TEST_F(RequestServerTest, OtherSessionsAreNotAnswered) {
    serve({{"http://a/", "page"}});
    ask("http://a/", "M", "Document", "stranger");
    EXPECT_THAT(take(), IsEmpty());
}

// Frames

TEST_F(RequestServerTest, AFrameGetsTheArchiveOfItsName) {
    serve({{"http://a/", "page"},
           {},
           {{{"http://a/f", "first", "text/html", "one"}}, {{"http://a/f", "second", "text/html", "two"}}}});
    attachFrame("F");
    tree_ = treeNode("M", "", {treeNode("F", "two")});
    askForDocument("http://a/f", "F");
    EXPECT_THAT(take(), ElementsAre("http://a/f -> second"));
}

TEST_F(RequestServerTest, AFrameSeesItsOwnResourcesFirst) {
    serve({{"http://a/", "page"},
           {{"http://a/i.png", "of the page"}},
           {{{"http://a/f", "frame"}, {{"http://a/i.png", "of the frame"}}}}});
    attachFrame("F");
    attachFrame("G", "F");
    askForDocument("http://a/f", "F");
    take();
    ask("http://a/i.png", "F");
    ask("http://a/i.png", "G"); // nothing is known of it: as its parent
    ask("http://a/i.png", "M");
    EXPECT_THAT(take(), ElementsAre("http://a/i.png -> of the frame", "http://a/i.png -> of the frame",
                                    "http://a/i.png -> of the page"));
}

TEST_F(RequestServerTest, TwoFramesNeverGetOneArchive) {
    serve({{"http://a/", "page"},
           {},
           {{{"http://a/1", "first", "text/html", "one"}},
            {{"http://a/2", "second", "text/html", "<!--frame1-->"}},
            {{"http://a/3", "third", "text/html", "one"}}}});
    attachFrame("F");
    attachFrame("G");
    answersTree_ = false;
    askForDocument("http://a/x", "F"); // both ask before either is answered
    askForDocument("http://a/y", "G");
    EXPECT_THAT(take(), ElementsAre(treeQuestion));
    tree_ = treeNode("M", "", {treeNode("F", "one"), treeNode("G", "one")});
    replyWithTree();
    EXPECT_THAT(take(), ElementsAre(treeQuestion, "http://a/x -> first"));
    replyWithTree();
    EXPECT_THAT(take(), ElementsAre("http://a/y -> third"));
}

TEST_F(RequestServerTest, FramesThatComeWhileNamesAreAwaitedShareTheNextAnswer) {
    serve({{"http://a/", "page"},
           {},
           {{{"http://a/1", "first", "text/html", "one"}},
            {{"http://a/2", "second", "text/html", "two"}},
            {{"http://a/3", "third", "text/html", "three"}}}});
    for (const char* frame : {"F", "G", "H"}) attachFrame(frame);
    answersTree_ = false;
    askForDocument("http://a/x", "F");
    askForDocument("http://a/x", "G");
    askForDocument("http://a/x", "H");
    EXPECT_THAT(take(), ElementsAre(treeQuestion));
    tree_ = treeNode("M", "", {treeNode("F", "two")}); // the others have come since
    replyWithTree();
    EXPECT_THAT(take(), ElementsAre(treeQuestion, "http://a/x -> second"));
    tree_ = treeNode("M", "", {treeNode("F", "two"), treeNode("G", "three"), treeNode("H", "one")});
    replyWithTree();
    EXPECT_THAT(take(), ElementsAre("http://a/x -> third", "http://a/x -> first"));
}

TEST_F(RequestServerTest, NamesAreAskedForOnlyWhereTheyMatter) {
    serve({{"http://a/", "page"},
           {},
           {{{"http://a/1", "first"}}, {{"http://a/2", "second", "text/html", "<!--frame1-->"}}}});
    attachFrame("F");
    answersTree_ = false;
    askForDocument("http://a/2", "F");
    EXPECT_THAT(take(), ElementsAre("http://a/2 -> second"));
}

TEST_F(RequestServerTest, AFrameWithoutAnArchiveOfItsOwnIsLookedUp) {
    serve({{"http://a/", "page"}, {{"http://a/f", "stored aside"}}});
    attachFrame("F");
    askForDocument("http://a/f", "F");
    askForDocument("http://a/g", "F");
    EXPECT_THAT(take(), ElementsAre("http://a/f -> stored aside", "http://a/g Aborted"));
}

TEST_F(RequestServerTest, AFrameThatGoesOnLeavesTheArchivesOfOthersAlone) {
    serve({{"http://a/", "page"}, {}, {{{"http://a/1", "first"}}, {{"http://a/2", "second"}}}});
    attachFrame("F");
    attachFrame("G");
    askForDocument("http://a/1", "F");
    take();
    askForDocument("http://a/missing", "F");
    askForDocument("http://a/1", "F");
    askForDocument("http://a/other", "G");
    EXPECT_THAT(take(),
                ElementsAre("http://a/missing Aborted", "http://a/1 -> first", "http://a/other -> second"));
}

TEST_F(RequestServerTest, NestedFramesAreFoundInTheirParentsArchive) {
    serve({{"http://a/", "page"}, {}, {{{"http://a/f", "frame"}, {}, {{{"http://a/g", "nested"}}}}}});
    attachFrame("F");
    attachFrame("G", "F");
    tree_ = treeNode("M", "", {treeNode("F", "", {treeNode("G", "")})});
    askForDocument("http://a/f", "F");
    take();
    askForDocument("http://a/anything", "G");
    EXPECT_THAT(take(), ElementsAre("http://a/anything -> nested"));
}

TEST_F(RequestServerTest, AnEngineThatTellsNoNamesStillGetsFrames) {
    serve({{"http://a/", "page"}, {}, {{{"http://a/f", "frame", "text/html", "one"}}}});
    attachFrame("F");
    answersTree_ = false;
    askForDocument("http://a/f", "F");
    transport_.receive(
        Json::object({{"id", transport_.sent.back()["id"]}, {"error", Json::object({{"message", "no"}})}}));
    next_ = transport_.sent.size() - 1;
    EXPECT_THAT(take(), ElementsAre("http://a/f -> frame"));
}

// Blank frames

TEST_F(RequestServerTest, BlankFramesAreFilled) {
    serve({{"http://a/", "page"},
           {},
           {{{"about:blank", "first"}},
            {{"http://a/f", "with an address"}},
            {{"about:blank", "caf\xE9", "text/html", "", "ISO-8859-1"}}}});
    attachFrame("F");
    attachFrame("G");
    attachFrame("H");
    navigated("F", "about:blank");
    navigated("G", "about:blank");
    navigated("H", "about:blank");
    int done = 0;
    server_.fillBlankFrames([&done] { ++done; });
    EXPECT_THAT(take(), ElementsAre("F = first", "G = caf\xC3\xA9"));
    acknowledge();
    EXPECT_EQ(done, 0);
    acknowledge(1);
    take(); // H is still blank: it is looked for once more
    EXPECT_EQ(done, 1);
}

TEST_F(RequestServerTest, BlankFramesInBlankFramesAreFilledAfterThem) {
    serve({{"http://a/", "page"}, {}, {{{"about:blank", "outer"}, {}, {{{"about:blank", "inner"}}}}}});
    attachFrame("F");
    navigated("F", "about:blank");
    int done = 0;
    server_.fillBlankFrames([&done] { ++done; });
    EXPECT_THAT(take(), ElementsAre("F = outer"));
    attachFrame("G", "F");
    navigated("G", "about:blank");
    tree_ = treeNode("M", "", {treeNode("F", "", {treeNode("G", "")})});
    acknowledge();
    EXPECT_THAT(take(), ElementsAre("G = inner"));
    EXPECT_EQ(done, 0);
    acknowledge();
    EXPECT_EQ(done, 1);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(RequestServerTest, WithoutBlankFramesItIsDoneAtOnce) {
    serve({{"http://a/", "page"}, {}, {{{"about:blank", "stored"}}}});
    attachFrame("F");
    navigated("F", "http://a/f");
    int done = 0;
    server_.fillBlankFrames([&done] { ++done; });
    EXPECT_EQ(done, 1);
    EXPECT_THAT(transport_.sent, IsEmpty());
}

TEST_F(RequestServerTest, BlankFramesWithNothingStoredStayBlank) {
    serve({{"http://a/", "page"}, {}, {{{"http://a/f", "frame"}}}});
    attachFrame("F");
    navigated("F", "about:blank");
    int done = 0;
    server_.fillBlankFrames([&done] { ++done; });
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_EQ(done, 1);
}

TEST_F(RequestServerTest, WithoutAnArchiveThereIsNothingToFill) {
    attachFrame("F");
    navigated("F", "about:blank");
    int done = 0;
    server_.fillBlankFrames([&done] { ++done; });
    EXPECT_EQ(done, 1);
}

TEST_F(RequestServerTest, FillingEndsWithTheConnection) {
    serve({{"http://a/", "page"}, {}, {{{"about:blank", "stored"}}}});
    attachFrame("F");
    navigated("F", "about:blank");
    int done = 0;
    server_.fillBlankFrames([&done] { ++done; });
    transport_.end("gone");
    transport_.nextResult = DevToolsTransport::SendResult::closed;
    for (int turn = 0; turn < 10; ++turn) loop_.runUntilDate(NSDate());
    EXPECT_EQ(done, 1);
}

// Authentication

TEST_F(RequestServerTest, ChallengesAreToldAndCancelled) {
    for (const char* frame : {"M", "F"}) {
        transport_.emit("page", "Fetch.authRequired",
                        Json::object({{"requestId", "r"},
                                      {"frameId", frame},
                                      {"request", Json::object({{"url", "http://a/secret"}})}}));
    }
    EXPECT_THAT(owner_.calls, ElementsAre("challenge main http://a/secret", "challenge F http://a/secret"));
    EXPECT_THAT(take(),
                ElementsAre(AllOf(HasSubstr("Fetch.continueWithAuth"), HasSubstr(R"("requestId":"r")"),
                                  HasSubstr(R"({"response":"CancelAuth"})")),
                            HasSubstr("CancelAuth")));
}

} // namespace
} // namespace qrv::engine
