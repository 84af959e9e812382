#include "Platform/Engine/Archive/PageRecorder.h"

#include "Platform/Foundation/NSRunLoop.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

Json frame(const std::string& id, const std::string& url, const std::string& name = {},
           std::vector<Json> children = {}) {
    return Json::object({{"frame", Json::object({{"id", id}, {"url", url}, {"name", name}})},
                         {"childFrames", Json::array(std::move(children))}});
}

class PageRecorderTest : public testing::Test {
protected:
    void gave(const std::string& to, const std::string& url, const std::string& bytes, bool isDocument,
              const char16_t* type = u"text/x", const NSString& encoding = {}) {
        recorder_.answered({to, url, "stored:" + url, isDocument,
                            WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
                                NSData(bytes), {}, NSString(type), encoding, {})});
    }

    void gavePage() { gave("M", "http://h/", "page", true); }

    /// The addresses of an archive's resources and, in brackets, of its frames.
    static std::string shape(const WebArchive& archive) {
        std::string text = archive.mainResource().URL().absoluteString().utf8();
        for (const id& one : archive.subresources())
            text += " " + as<WebResource>(one).URL().absoluteString().utf8();
        for (const id& one : archive.subframeArchives()) text += " [" + shape(as<WebArchive>(one)) + "]";
        return text;
    }

    PageRecorder recorder_;
};

TEST_F(PageRecorderTest, NestsFramesWithTheirResources) {
    gavePage();
    gave("A", "http://h/a", "frame", true);
    gave("B", "http://h/b", "inner", true);
    gave("B", "http://h/b.png", "picture", false);
    gave("M", "http://h/m.png", "picture", false);
    gave("A", "http://h/a.png", "picture", false);
    const WebArchive archive = recorder_.archive(
        frame("M", "http://h/", "", {frame("A", "http://h/a", "one", {frame("B", "http://h/b")})}),
        {{"M", "UTF-8"}, {"B", "Shift_JIS"}});
    EXPECT_EQ(shape(archive),
              "stored:http://h/ stored:http://h/m.png [stored:http://h/a stored:http://h/a.png "
              "[stored:http://h/b stored:http://h/b.png]]");
    EXPECT_EQ(archive.mainResource().textEncodingName(), NSString(u"UTF-8"));
    EXPECT_TRUE(archive.mainResource().frameName().isNil());
    EXPECT_EQ(frameAt(archive, 0).mainResource().frameName(), NSString(u"one"));
    EXPECT_TRUE(frameAt(archive, 0).mainResource().textEncodingName().isNil());
    EXPECT_EQ(frameAt(frameAt(archive, 0), 0).mainResource().textEncodingName(), NSString(u"Shift_JIS"));
    EXPECT_EQ(frameAt(frameAt(archive, 0), 0).mainResource().data().bytes(), "inner");
}

TEST_F(PageRecorderTest, FramesWithoutADocumentLeaveWhatTheyHaveToTheOuterOne) {
    gavePage();
    gave("S", "http://h/s.png", "picture", false);
    gave("I", "http://h/i", "inner", true);
    const Json tree =
        frame("M", "http://h/", "", {frame("S", "about:srcdoc", "", {frame("I", "http://h/i")})});
    EXPECT_EQ(shape(recorder_.archive(tree, {})),
              "stored:http://h/ stored:http://h/s.png [stored:http://h/i]");
}

TEST_F(PageRecorderTest, WhatFramesHadThatAreGoneIsWithThePage) {
    gavePage();
    gave("G", "http://h/g", "gone", true);
    gave("G", "http://h/g.png", "picture", false);
    gave("", "http://h/worker.js", "script", false);
    EXPECT_EQ(shape(recorder_.archive(frame("M", "http://h/"), {})),
              "stored:http://h/ stored:http://h/worker.js stored:http://h/g stored:http://h/g.png");
}

TEST_F(PageRecorderTest, AFrameHasTheDocumentThatItShows) {
    gavePage();
    gave("A", "http://h/1", "first", true);
    gave("A", "http://h/2", "second", true);
    const auto shown = [&](const char* url) {
        const WebArchive archive = recorder_.archive(frame("M", "http://h/", "", {frame("A", url)}), {});
        return frameAt(archive, 0).mainResource().data().bytes();
    };
    EXPECT_EQ(shown("http://h/1#there"), "first");
    EXPECT_EQ(shown("http://h/2"), "second");
    EXPECT_EQ(shown("http://h/pushed"), "second");
}

TEST_F(PageRecorderTest, TheLastAnswerToAnAddressCounts) {
    gavePage();
    gave("M", "http://h/a", "old", false);
    gave("M", "http://h/a", "new", false);
    const WebArchive archive = recorder_.archive(frame("M", "http://h/"), {});
    ASSERT_EQ(archive.subresources().count(), 1u);
    EXPECT_EQ(resourceAt(archive, 0).data().bytes(), "new");
}

TEST_F(PageRecorderTest, TypesAreTheStoredOnesOrElseTheEngines) {
    NSRunLoop loop;
    ScriptedTransport transport;
    DevToolsClient client(transport, loop);
    recorder_.attach(client, "page");
    transport.emit(
        "page", "Network.responseReceived",
        Json::object({{"response", Json::object({{"url", "http://h/a"}, {"mimeType", "image/png"}})}}));
    gavePage();
    gave("M", "http://h/a", "picture", false, u"");
    gave("M", "http://h/b", "picture", false, u"image/gif", NSString(u"KOI8-R"));
    gave("M", "http://h/c", "data", false, u"");
    const WebArchive archive = recorder_.archive(frame("M", "http://h/"), {});
    EXPECT_EQ(resourceAt(archive, 0).MIMEType(), NSString(u"image/png"));
    EXPECT_EQ(resourceAt(archive, 1).MIMEType(), NSString(u"image/gif"));
    EXPECT_EQ(resourceAt(archive, 1).textEncodingName(), NSString(u"KOI8-R"));
    EXPECT_EQ(resourceAt(archive, 2).MIMEType(), NSString(u"application/octet-stream"));
}

TEST_F(PageRecorderTest, FramesAreNestedAsDeepAsTheyAreRead) {
    gavePage();
    Json tree = frame("100", "http://h/100");
    for (int depth = 99; depth > 0; --depth) {
        const std::string number = std::to_string(depth);
        tree = frame(number, "http://h/" + number, "", {tree});
    }
    for (int depth = 1; depth <= 100; ++depth) {
        const std::string number = std::to_string(depth);
        gave(number, "http://h/" + number, number, true);
    }
    const WebArchive archive = recorder_.archive(frame("M", "http://h/", "", {tree}), {});
    EXPECT_EQ(archive.subresources().count(), 36u);
    WebArchive innermost = archive;
    while (innermost.subframeArchives().count() > 0) innermost = frameAt(innermost, 0);
    EXPECT_EQ(innermost.mainResource().data().bytes(), "64");
}

TEST_F(PageRecorderTest, IsNilWithoutThePage) {
    gave("A", "http://h/a", "frame", true);
    EXPECT_TRUE(recorder_.archive(frame("M", "http://h/", "", {frame("A", "http://h/a")}), {}).isNil());
}

} // namespace
} // namespace qrv::engine
