#include "Platform/Engine/DevTools/DevToolsClient.h"

#include "Platform/Foundation/NSDate.h"
#include "Tests/Platform/Engine/JsonText.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace qrv::engine {
namespace {

using namespace std::chrono_literals;
using Status = DevToolsReply::Status;

class DevToolsClientTest : public ::testing::Test {
protected:
    void turn() { loop_.runUntilDate(NSDate()); }

    void soon(NSRunLoop::Handler handler) { posted_.push_back(loop_.performSoon(std::move(handler))); }

    DevToolsClient::ReplyHandler record() {
        return [this](const DevToolsReply& reply) { replies_.push_back(reply); };
    }

    // Records events of the page's session under a name.
    DevToolsClient::Subscription listen(const std::string& name, const std::string& method) {
        return client_->listen(
            "page", method, [this, name](const Json& params) { events_ += name + jsonText(params) + ";"; });
    }

    NSRunLoop loop_;
    std::vector<NSRunLoop::Posted> posted_;
    ScriptedTransport transport_;
    std::unique_ptr<DevToolsClient> client_ = std::make_unique<DevToolsClient>(transport_, loop_);
    std::vector<DevToolsReply> replies_;
    std::string events_;
};

TEST_F(DevToolsClientTest, SendsCommandsWithIdsOfTheirOwn) {
    client_->send({}, "Browser.getVersion");
    client_->send("page", "Page.navigate", Json::object({{"url", "a\"b"}}));
    ASSERT_EQ(transport_.sent.size(), 2u);
    EXPECT_EQ(jsonText(transport_.sent[0]), R"({"id":1,"method":"Browser.getVersion"})");
    EXPECT_EQ(jsonText(transport_.sent[1]),
              R"({"id":2,"method":"Page.navigate","sessionId":"page","params":{"url":"a\"b"}})");
}

TEST_F(DevToolsClientTest, GivesEachReplyToItsCommand) {
    std::string order;
    client_->send({}, "A", {}, [&](const DevToolsReply& reply) { order += "A" + jsonText(reply.result); });
    client_->send({}, "B", {}, [&](const DevToolsReply& reply) { order += "B" + jsonText(reply.result); });
    transport_.reply(2, Json::object({{"b", 2}}));
    transport_.reply(1, Json::object({}));
    EXPECT_EQ(order, R"(B{"b":2}A{})");
}

TEST_F(DevToolsClientTest, HandsOnErrors) {
    client_->send({}, "A", {}, record());
    client_->send({}, "B", {}, record());
    transport_.receive(parseJson(R"({"id":1,"error":{"code":-32000,"message":"no such target"}})"));
    transport_.receive(parseJson(R"({"id":2})"));
    ASSERT_EQ(replies_.size(), 2u);
    EXPECT_FALSE(replies_[0].ok());
    EXPECT_EQ(replies_[0].status, Status::error);
    EXPECT_EQ(replies_[0].errorCode, -32000);
    EXPECT_EQ(replies_[0].errorMessage, "no such target");
    EXPECT_EQ(replies_[1].status, Status::error);
}

TEST_F(DevToolsClientTest, DropsWhatAnswersNothing) {
    client_->send({}, "A", {}, record());
    for (const char* text :
         {R"({"id":7,"result":{}})", R"({"id":"1","result":{}})", R"({"id":1.5,"result":{}})",
          R"({"id":null,"result":{}})", "[]", "7", R"({"method":5})", R"({})"})
        transport_.receive(parseJson(text));
    EXPECT_TRUE(replies_.empty());
    transport_.reply(1, {});
    transport_.reply(1, {});
    EXPECT_EQ(replies_.size(), 1u);
}

TEST_F(DevToolsClientTest, DisconnectingEndsWhatIsWaitedFor) {
    client_->send("page", "A", {}, record());
    std::string closed;
    client_->setClosedHandler([&](const std::string& reason) { closed = reason; });
    const auto listening = listen("event", "E");
    const auto timer = loop_.scheduleTimer(1ms, [this] { client_->disconnect("enough"); });
    EXPECT_EQ(client_->call("page", "B", {}, 30s).status, Status::closed);
    turn();
    ASSERT_EQ(replies_.size(), 1u);
    EXPECT_EQ(replies_[0].status, Status::closed);
    EXPECT_EQ(replies_[0].errorMessage, "enough");
    EXPECT_EQ(closed, "enough");
    const std::size_t sent = transport_.sent.size();
    EXPECT_EQ(client_->call("page", "C", {}, 30s).status, Status::closed);
    EXPECT_EQ(transport_.sent.size(), sent);
    transport_.emit("page", "E", {});
    EXPECT_EQ(events_, "");
    EXPECT_TRUE(client_->isClosed());
}

TEST_F(DevToolsClientTest, ACommandWithoutACallbackIgnoresItsReply) {
    client_->send({}, "A");
    transport_.reply(1, {});
    client_->send({}, "B");
    transport_.end("gone");
    turn();
    EXPECT_TRUE(client_->isClosed());
}

TEST_F(DevToolsClientTest, ReportsAMessageThatIsTooLargeLater) {
    transport_.nextResult = DevToolsTransport::SendResult::tooLarge;
    client_->send({}, "A", {}, record());
    EXPECT_TRUE(replies_.empty());
    turn();
    ASSERT_EQ(replies_.size(), 1u);
    EXPECT_EQ(replies_[0].status, Status::tooLarge);
    EXPECT_FALSE(client_->isClosed());
}

TEST_F(DevToolsClientTest, TheEndOfTheConnectionAnswersEverythingOnce) {
    std::string order;
    client_->setClosedHandler([&](const std::string& reason) { order += "closed:" + reason; });
    for (const char* name : {"A", "B"})
        client_->send({}, name, {}, [&order, name](const DevToolsReply& reply) {
            EXPECT_EQ(reply.status, Status::closed);
            order += name + reply.errorMessage + ";";
        });
    transport_.end("gone");
    transport_.end("again");
    turn();
    transport_.reply(1, {});
    EXPECT_EQ(order, "Agone;Bgone;closed:gone");
}

TEST_F(DevToolsClientTest, CommandsAfterTheEndAreAnsweredLater) {
    transport_.end("gone");
    client_->send({}, "A", {}, record());
    EXPECT_TRUE(replies_.empty());
    turn();
    ASSERT_EQ(replies_.size(), 1u);
    EXPECT_EQ(replies_[0].status, Status::closed);
    EXPECT_EQ(replies_[0].errorMessage, "gone");
    EXPECT_TRUE(transport_.sent.empty());
}

TEST_F(DevToolsClientTest, ACallbackThatThrowsDoesNotTakeTheOthersAnswersAway) {
    client_->send({}, "A", {}, [](const DevToolsReply&) { throw std::runtime_error("A"); });
    client_->send({}, "B", {}, record());
    transport_.end("gone");
    EXPECT_THROW(turn(), std::runtime_error);
    turn();
    EXPECT_EQ(replies_.size(), 1u);
}

TEST_F(DevToolsClientTest, TheEndOfASessionAnswersItsCommandsOnly) {
    client_->send("page", "A", {}, record());
    client_->send("worker", "B", {}, record());
    client_->send({}, "C", {}, record());
    transport_.emit({}, "Target.detachedFromTarget", Json::object({{"sessionId", "page"}}));
    transport_.emit({}, "Target.detachedFromTarget", Json::object({}));
    turn();
    ASSERT_EQ(replies_.size(), 1u);
    EXPECT_EQ(replies_[0].status, Status::closed);
    transport_.reply(2, {});
    transport_.reply(3, {});
    EXPECT_EQ(replies_.size(), 3u);
}

TEST_F(DevToolsClientTest, CallReturnsTheReply) {
    soon([this] { transport_.reply(1, Json::object({{"x", 1}})); });
    DevToolsReply reply = client_->call("page", "A", {}, 20s);
    EXPECT_TRUE(reply.ok());
    EXPECT_EQ(reply.result["x"].integer(), 1);
}

TEST_F(DevToolsClientTest, CallEndsWithTheConnection) {
    soon([this] { transport_.end("gone"); });
    DevToolsReply reply = client_->call("page", "A", {}, 20s);
    EXPECT_EQ(reply.status, Status::closed);
    EXPECT_EQ(reply.errorMessage, "gone");
    EXPECT_EQ(client_->call("page", "A", {}, 20s).status, Status::closed);
}

TEST_F(DevToolsClientTest, CallGivesUpAtItsTimeoutAndDropsTheLateReply) {
    DevToolsReply reply = client_->call("page", "A", {}, 10ms);
    EXPECT_EQ(reply.status, Status::timedOut);
    transport_.reply(1, {});
    soon([this] { transport_.reply(2, {}); });
    EXPECT_TRUE(client_->call("page", "B", {}, 20s).ok());
}

TEST_F(DevToolsClientTest, CallsNestInsideListeners) {
    auto subscription = client_->listen("page", "E", [this](const Json&) {
        soon([this] {
            transport_.reply(2, "inner");
            transport_.reply(1, "outer");
        });
        events_ += client_->call("page", "Inner", {}, 20s).result.string();
    });
    soon([this] { transport_.emit("page", "E", {}); });
    events_ += client_->call("page", "Outer", {}, 20s).result.string();
    EXPECT_EQ(events_, "innerouter");
}

TEST_F(DevToolsClientTest, CallSurvivesTheDestructionOfTheClient) {
    soon([this] { client_.reset(); });
    EXPECT_EQ(client_->call("page", "A", {}, 20s).status, Status::closed);
}

TEST_F(DevToolsClientTest, CallSurvivesTheDestructionOfAClientThatHasAnAnswerForIt) {
    transport_.nextResult = DevToolsTransport::SendResult::tooLarge;
    soon([this] { client_.reset(); });
    const DevToolsReply reply = client_->call("page", "A", {}, 20s);
    EXPECT_EQ(reply.errorMessage, "the client was destroyed");
}

TEST_F(DevToolsClientTest, EventsGoToTheListenersOfTheirSessionAndMethod) {
    auto one = listen("1", "E");
    auto two = listen("2", "E");
    auto other = listen("x", "F");
    auto browser = client_->listen({}, "E", [this](const Json&) { events_ += "browser;"; });
    transport_.emit("page", "E", 1);
    transport_.emit("worker", "E", 2);
    transport_.receive(parseJson(R"({"method":"E"})"));
    EXPECT_EQ(events_, "11;21;browser;");
}

TEST_F(DevToolsClientTest, ADroppedListenerIsSilent) {
    auto one = listen("1", "E");
    { auto two = listen("2", "E"); }
    one.cancel();
    auto three = listen("3", "E");
    transport_.emit("page", "E", {});
    EXPECT_EQ(events_, "3null;");
}

TEST_F(DevToolsClientTest, ListenersMayBeRemovedWhileAnEventIsHandedOut) {
    DevToolsClient::Subscription self;
    DevToolsClient::Subscription later;
    self = client_->listen("page", "E", [&](const Json&) {
        self.cancel();
        later.cancel();
        events_ += "self;";
    });
    later = listen("later", "E");
    auto last = listen("last", "E");
    transport_.emit("page", "E", {});
    transport_.emit("page", "E", {});
    EXPECT_EQ(events_, "self;lastnull;lastnull;");
}

TEST_F(DevToolsClientTest, AListenerAddedWhileAnEventIsHandedOutGetsTheNextOne) {
    std::vector<DevToolsClient::Subscription> added;
    auto adding = client_->listen("page", "E", [&](const Json&) { added.push_back(listen("new", "E")); });
    transport_.emit("page", "E", 1);
    EXPECT_EQ(events_, "");
    adding.cancel();
    transport_.emit("page", "E", 2);
    EXPECT_EQ(events_, "new2;");
}

TEST_F(DevToolsClientTest, TheClientMayBeDestroyedByAListenerOrACallback) {
    auto destroying = client_->listen("page", "E", [this](const Json&) { client_.reset(); });
    auto second = listen("second", "E");
    transport_.emit("page", "E", {});
    EXPECT_EQ(client_, nullptr);

    client_ = std::make_unique<DevToolsClient>(transport_, loop_);
    client_->send({}, "A", {}, [this](const DevToolsReply&) { client_.reset(); });
    transport_.reply(1, {});
    EXPECT_EQ(client_, nullptr);
    transport_.emit("page", "E", {}); // nobody listens any more
}

TEST_F(DevToolsClientTest, CallbacksOfADestroyedClientAreDropped) {
    client_->send({}, "A", {}, record());
    transport_.end("gone");
    client_.reset();
    turn();
    EXPECT_TRUE(replies_.empty());
}

TEST_F(DevToolsClientTest, ACallbackMayDestroyTheClientThatHasMoreToCall) {
    client_->send({}, "A", {}, [this](const DevToolsReply&) { client_.reset(); });
    client_->send({}, "B", {}, record());
    client_->setClosedHandler([this](const std::string& reason) { events_ += reason; });
    transport_.end("gone");
    turn();
    turn();
    EXPECT_EQ(client_, nullptr);
    EXPECT_TRUE(replies_.empty());
    EXPECT_EQ(events_, "");
}

TEST_F(DevToolsClientTest, ACallbackMaySendWhatIsAnsweredLater) {
    transport_.end("gone");
    int answers = 0;
    DevToolsClient::ReplyHandler again = [&](const DevToolsReply&) {
        if (++answers < 100) client_->send({}, "A", {}, again);
    };
    client_->send({}, "A", {}, again);
    loop_.runUntil([&] { return answers == 100; }, std::chrono::steady_clock::now() + 20s);
    EXPECT_EQ(answers, 100);
}

TEST_F(DevToolsClientTest, ASubscriptionMayOutliveItsClient) {
    auto subscription = listen("1", "E");
    client_.reset();
    subscription.cancel();
    transport_.emit("page", "E", {});
    EXPECT_EQ(events_, "");
}

} // namespace
} // namespace qrv::engine
