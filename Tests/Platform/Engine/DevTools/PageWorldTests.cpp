#include "Platform/Engine/DevTools/PageWorld.h"

#include "Tests/Platform/Engine/JsonText.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr PageScript script{"script.js", "(one, two) => one + two"};
constexpr PageScript other{"other.js", "() => 1"};

/// A page whose worlds come and go; the test says what it answers.
class Page final : public ScriptedTransport {
public:
    explicit Page(NSRunLoop& loop) : loop_(loop) {}

    SendResult send(const Json& message) override {
        ScriptedTransport::send(message);
        answers_.push_back(
            loop_.performSoon([this, command = sent.back()] { answer(command["id"].integer(), command); }));
        return SendResult::accepted;
    }

    Json exception; // for every call
    Json frameTree;
    int worldsToLose = 0;
    int worldsToRefuse = 0;
    bool isSilent = false; // answers no call
    int questionsToMiss = 0;
    int callsToMiss = 0; // in other frames

    /// What was sent, in a word each: the method, and for a call the script's world.
    std::vector<std::string> words;

private:
    void answer(std::int64_t id, const Json& command) {
        const std::string method = command["method"].string();
        const Json params = command["params"];
        if (method == "Page.createIsolatedWorld") {
            words.push_back("world of " + params["frameId"].string());
            if (worldsToRefuse-- > 0) return refuse(id);
            reply(id, Json::object({{"executionContextId", ++worlds_}}));
        } else if (method == "Page.getFrameTree") {
            reply(id, Json::object({{"frameTree", frameTree}}));
        } else if (method == "Runtime.evaluate") {
            words.push_back("shared in " + std::to_string(params["contextId"].integer()));
            EXPECT_EQ(params["expression"].string(), scripts::shared.source);
            reply(id, Json::object({}));
        } else if (method == "Runtime.callFunctionOn") {
            words.push_back("call in " + std::to_string(params["executionContextId"].integer()));
            if (isSilent) return;
            if (params["executionContextId"].integer() > 1 && callsToMiss-- > 0) return;
            if (worldsToLose-- > 0) return refuse(id);
            Json value = params["arguments"][0]["value"];
            reply(id, exception.isNull() ? Json::object({{"result", Json::object({{"value", value}})}})
                                         : Json::object({{"exceptionDetails", exception}}));
        } else {
            words.push_back(method);
            if (method == "A.question" && questionsToMiss-- > 0) return;
            reply(id, Json::object({}));
        }
    }

    void refuse(std::int64_t id) {
        const Json error = Json::object({{"message", "Cannot find context with specified id"}});
        receive(Json::object({{"id", id}, {"error", error}}));
    }

    NSRunLoop& loop_;
    std::vector<NSRunLoop::Posted> answers_;
    int worlds_ = 0;
};

Json thrown(const std::string& description, int line) {
    return Json::object({{"text", "Uncaught"},
                         {"lineNumber", line},
                         {"exception", Json::object({{"description", description}})}});
}

std::string textOf(const std::optional<Json>& answer) {
    return answer ? jsonText(*answer) : "nothing";
}

class PageWorldTest : public ::testing::Test {
protected:
    NSRunLoop loop_;
    Page page_{loop_};
    DevToolsClient client_{page_, loop_};
    std::vector<std::string> log_;
    PageWorld world_{client_, "page", "M", [this](const std::string& line) { log_.push_back(line); }};
};

TEST_F(PageWorldTest, AScriptIsCalledInAWorldThatHasTheSharedFunctions) {
    EXPECT_EQ(textOf(world_.call(script, {7, "two"})), "7");
    EXPECT_EQ(textOf(world_.call(script, {"text"})), R"("text")");
    EXPECT_THAT(page_.words, ElementsAre("world of M", "shared in 1", "call in 1", "call in 1"));
    const Json params = page_.sent[2]["params"];
    EXPECT_EQ(params["functionDeclaration"].string(), script.source);
    EXPECT_EQ(jsonText(params["arguments"]), R"([{"value":7},{"value":"two"}])");
    EXPECT_TRUE(params["returnByValue"].boolean());
    EXPECT_FALSE(params["awaitPromise"].boolean());
    EXPECT_EQ(page_.sent[2]["sessionId"].string(), "page");
}

TEST_F(PageWorldTest, APromiseIsAwaited) {
    world_.await(script, {1});
    EXPECT_TRUE(page_.sent.back()["params"]["awaitPromise"].boolean());
}

TEST_F(PageWorldTest, AWorldThatIsGoneIsMadeAgain) {
    page_.worldsToLose = 2;
    EXPECT_EQ(textOf(world_.call(script, {7})), "7");
    EXPECT_THAT(page_.words,
                ElementsAre("world of M", "shared in 1", "call in 1", "world of M", "shared in 2",
                            "call in 2", "world of M", "shared in 3", "call in 3"));
    EXPECT_THAT(log_, IsEmpty());
    EXPECT_FALSE(world_.isInterrupted());
}

TEST_F(PageWorldTest, AWorldThatIsGoneEachTimeEndsTheTrying) {
    page_.worldsToLose = 100;
    EXPECT_FALSE(world_.call(script));
    EXPECT_EQ(std::count(page_.words.begin(), page_.words.end(), "world of M"), 3);
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(PageWorldTest, APageThatGivesNoWorldIsInterrupted) {
    page_.worldsToRefuse = 1;
    EXPECT_EQ(textOf(world_.call(script, {7})), "7");
    EXPECT_TRUE(world_.isInterrupted());
    EXPECT_THAT(page_.words, ::testing::Contains("Runtime.terminateExecution"));
}

TEST_F(PageWorldTest, AScriptThatThrowsIsToldOnceAndNotTriedAgain) {
    page_.exception = thrown("TypeError: no such thing\n    at script.js:3", 2);
    EXPECT_FALSE(world_.call(script));
    EXPECT_THAT(page_.words, ElementsAre("world of M", "shared in 1", "call in 1"));
    EXPECT_THAT(log_, ElementsAre("script.js threw at line 3: TypeError: no such thing"));
    EXPECT_FALSE(world_.call(script));
    EXPECT_EQ(log_.size(), 1u);
    EXPECT_FALSE(world_.call(other));
    EXPECT_EQ(log_.size(), 2u);
    page_.exception = {};
    EXPECT_EQ(textOf(world_.call(script, {7})), "7"); // the world is still there
    EXPECT_EQ(page_.words.back(), "call in 1");
}

TEST_F(PageWorldTest, WhatASharedFunctionThrowsHasItsPlace) {
    page_.exception =
        thrown("Error: e\n    at read (web2pdf/shared.js:10:3)\n    at web2pdf/script.js:2:1", 9);
    world_.call(script);
    page_.exception =
        thrown("Error: e\n    at web2pdf/other.js:2:1\n    at read (web2pdf/shared.js:10:3)", 1);
    world_.call(other);
    EXPECT_THAT(log_, ElementsAre("script.js threw at line 10 of shared.js: Error: e",
                                  "other.js threw at line 2: Error: e"));
}

TEST_F(PageWorldTest, WhatIsThrownMayBeAnythingOfAnyLength) {
    page_.exception = Json::object({{"text", "Uncaught"}});
    world_.call(script);
    page_.exception = thrown(std::string(5000, 'x'), 0);
    world_.call(other);
    ASSERT_EQ(log_.size(), 2u);
    EXPECT_EQ(log_[0], "script.js threw at line 1: Uncaught");
    EXPECT_LT(log_[1].size(), 400u);
}

TEST_F(PageWorldTest, APageThatDoesNotAnswerIsInterrupted) {
    page_.isSilent = true;
    EXPECT_FALSE(world_.await(script));
    EXPECT_TRUE(world_.isInterrupted());
    EXPECT_EQ(std::count(page_.words.begin(), page_.words.end(), "call in 1"), 1);
}

TEST_F(PageWorldTest, APageThatDoesNotAnswerAQuestionIsInterruptedOnce) {
    EXPECT_TRUE(world_.ask("A.question", {}).ok());
    EXPECT_FALSE(world_.isInterrupted());
    page_.questionsToMiss = 1;
    EXPECT_TRUE(world_.ask("A.question", {}).ok());
    EXPECT_TRUE(world_.isInterrupted());
    page_.questionsToMiss = 1;
    EXPECT_EQ(world_.ask("A.question", {}).status, DevToolsReply::Status::timedOut);
    EXPECT_THAT(page_.words, ElementsAre("A.question", "A.question", "Runtime.terminateExecution",
                                         "Emulation.setScriptExecutionDisabled", "A.question", "A.question"));
}

TEST_F(PageWorldTest, ScriptsAreCalledInOtherFrames) {
    std::vector<std::string> answers;
    const auto keep = [&](const std::optional<Json>& answer) { answers.push_back(textOf(answer)); };
    const auto arrived = [&] { return !answers.empty(); };
    const auto wait = [&] {
        loop_.runUntil(arrived, std::chrono::steady_clock::now() + std::chrono::seconds(30));
        return std::exchange(answers, {});
    };
    world_.callInFrame("F", script, {7}, keep);
    EXPECT_THAT(wait(), ElementsAre("7"));
    EXPECT_THAT(page_.words, ElementsAre("world of F", "shared in 1", "call in 1"));

    page_.worldsToRefuse = 1;
    world_.callInFrame("F", script, {7}, keep);
    EXPECT_THAT(wait(), ElementsAre("nothing"));

    page_.exception = thrown("Error: e", 0);
    world_.callInFrame("F", script, {7}, keep);
    EXPECT_THAT(wait(), ElementsAre("nothing"));
    EXPECT_THAT(log_, ElementsAre("script.js threw at line 1: Error: e"));
}

Json tree(const char* frame, const std::vector<Json>& children = {}) {
    return Json::object({{"frame", Json::object({{"id", frame}})}, {"childFrames", Json::array(children)}});
}

TEST_F(PageWorldTest, AScriptIsCalledInEveryFrameInTheOrderOfTheTree) {
    page_.frameTree = tree("M", {tree("A", {tree("B")}), tree("C")});
    const auto answers = world_.callInFrames(script, {7});
    // No frame waits for the answer of another.
    EXPECT_THAT(page_.words, ElementsAre("world of M", "shared in 1", "call in 1", "world of A", "world of B",
                                         "world of C", "shared in 2", "call in 2", "shared in 3", "call in 3",
                                         "shared in 4", "call in 4"));
    std::vector<std::string> told;
    for (const auto& [frame, answer] : answers) told.push_back(frame + " " + jsonText(answer));
    EXPECT_THAT(told, ElementsAre("M 7", "A 7", "B 7", "C 7"));
}

TEST_F(PageWorldTest, AFrameThatIsGoneIsLeftOut) {
    page_.frameTree = tree("M", {tree("A"), tree("B")});
    world_.call(script);
    page_.worldsToRefuse = 1;
    const auto answers = world_.callInFrames(script, {7});
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[1].frameID, "B");
    EXPECT_FALSE(world_.isInterrupted());
}

// However many they are: each would be waited for.
TEST_F(PageWorldTest, FramesThatDoNotAnswerAreInterruptedAndLeftOut) {
    page_.frameTree = tree("M", std::vector<Json>(20, tree("A")));
    world_.call(script);
    page_.callsToMiss = 20;
    const auto start = std::chrono::steady_clock::now();
    const auto answers = world_.callInFrames(script, {7});
    EXPECT_LT(std::chrono::steady_clock::now() - start, 4 * PageWorld::patience);
    EXPECT_TRUE(world_.isInterrupted());
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].frameID, "M");
}

TEST_F(PageWorldTest, NotMoreThanTwoHundredFramesAreCalled) {
    page_.frameTree = tree("M", std::vector<Json>(1000, tree("A")));
    EXPECT_EQ(world_.callInFrames(script, {7}).size(), 200u);
}

TEST_F(PageWorldTest, ProgramsRunInNewDocuments) {
    world_.runInNewDocuments(other, PageWorld::Place::pagesWorld);
    world_.runInNewDocuments(other, PageWorld::Place::ownWorld);
    ASSERT_EQ(page_.sent.size(), 2u);
    EXPECT_EQ(jsonText(page_.sent[0]["params"]), R"({"source":"() => 1"})");
    EXPECT_EQ(jsonText(page_.sent[1]["params"]), R"({"source":"() => 1","worldName":"web2pdf"})");
}

TEST_F(PageWorldTest, HaltingEndsScriptsAndLoadsWithoutWaiting) {
    world_.halt();
    ASSERT_EQ(page_.sent.size(), 2u);
    EXPECT_EQ(page_.sent[0]["method"].string(), "Emulation.setScriptExecutionDisabled");
    EXPECT_TRUE(page_.sent[0]["params"]["value"].boolean());
    EXPECT_EQ(page_.sent[1]["method"].string(), "Page.stopLoading");
    EXPECT_TRUE(page_.words.empty()) << "nothing was answered yet";
}

} // namespace
} // namespace qrv::engine
