#include "Platform/Engine/Loading/RequestsUnderWay.h"

#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

class RequestsUnderWayTest : public ::testing::Test {
protected:
    RequestsUnderWayTest() { requests_.attach(client_, "page"); }

    void emit(const char* method, const Json& params) { transport_.emit("page", method, params); }

    void begin(const char* request, const char* type = "Image", const char* frame = "M") {
        emit("Network.requestWillBeSent",
             Json::object({{"requestId", request}, {"type", type}, {"frameId", frame}}));
    }

    void finish(const char* request) {
        emit("Network.loadingFinished", Json::object({{"requestId", request}}));
    }

    NSRunLoop loop_;
    ScriptedTransport transport_;
    DevToolsClient client_{transport_, loop_};
    RequestsUnderWay requests_;
};

TEST_F(RequestsUnderWayTest, WhatIsAskedForIsUnderWayUntilItHasArrivedOrFailed) {
    EXPECT_TRUE(requests_.isEmpty());
    begin("1");
    begin("2");
    finish("1");
    EXPECT_FALSE(requests_.isEmpty());
    EXPECT_EQ(requests_.ended(), 1u);
    emit("Network.loadingFailed", Json::object({{"requestId", "2"}}));
    EXPECT_TRUE(requests_.isEmpty());
    EXPECT_EQ(requests_.ended(), 2u);
}

TEST_F(RequestsUnderWayTest, ARedirectIsTheSameRequest) {
    begin("1");
    begin("1");
    finish("1");
    EXPECT_TRUE(requests_.isEmpty());
}

TEST_F(RequestsUnderWayTest, VideoAndSoundMayArriveForEver) {
    begin("1", "Media");
    begin("2", "EventSource");
    begin("3", "Ping");
    EXPECT_TRUE(requests_.isEmpty());
    finish("1");
    EXPECT_EQ(requests_.ended(), 1u);
}

TEST_F(RequestsUnderWayTest, ScriptsOfSharedWorkersHaveNoEnd) {
    const auto ask = [this](const char* request, const char* loader, const char* document) {
        emit("Network.requestWillBeSent",
             Json::object({{"requestId", request},
                           {"type", "Script"},
                           {"frameId", "M"},
                           {"loaderId", loader},
                           {"documentURL", document},
                           {"request", Json::object({{"url", "https://a.example/script.js"}})}}));
    };
    ask("1", "", "https://a.example/script.js");
    EXPECT_TRUE(requests_.isEmpty());
    ask("2", "", "https://a.example/");
    EXPECT_FALSE(requests_.isEmpty());
    finish("2");
    ask("3", "L", "https://a.example/script.js");
    EXPECT_FALSE(requests_.isEmpty());
}

TEST_F(RequestsUnderWayTest, AFramesRequestsGoWithItsPage) {
    begin("1", "Image", "F");
    begin("2", "Image", "G");
    emit("Page.frameDetached", Json::object({{"frameId", "F"}}));
    EXPECT_FALSE(requests_.isEmpty());
    emit("Page.frameNavigated", Json::object({{"frame", Json::object({{"id", "G"}})}}));
    EXPECT_TRUE(requests_.isEmpty());
    finish("2");
    EXPECT_TRUE(requests_.isEmpty());
}

} // namespace
} // namespace qrv::engine
