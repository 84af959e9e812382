#include "Platform/Engine/Print/PageReadiness.h"

#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using std::chrono::steady_clock;
using ::testing::ElementsAre;

/// A page of a certain height that answers at once, and writes down what it is told, in a word each.
class TallPage final : public ScriptedTransport {
public:
    explicit TallPage(NSRunLoop& loop) : loop_(loop) {}

    SendResult send(std::string message) override {
        ScriptedTransport::send(std::move(message));
        answers_.push_back(loop_.performSoon([this, command = sent.back()] { answer(command); }));
        return SendResult::accepted;
    }

    double height = 3000;
    int imagesPending = 0; // for so many questions
    Json failed;
    bool isSingleMedia = false;
    bool isSilent = false; // answers no script
    std::function<void()> onAwait;
    std::vector<std::string> words;

private:
    void answer(const Json& command) {
        const std::string method = command["method"].string();
        const Json params = command["params"];
        Json value;
        if (method == "Runtime.callFunctionOn") {
            if (isSilent) return;
            value = answerTo(params["functionDeclaration"].string(), params["arguments"]);
        } else if (method == "Emulation.setDeviceMetricsOverride") {
            words.push_back("height " + std::to_string(params["height"].integer()));
        } else if (method == "Emulation.setScriptExecutionDisabled") {
            words.emplace_back("stop");
        }
        reply(command["id"].integer(),
              Json::object({{"executionContextId", 1}, {"result", Json::object({{"value", value}})}}));
    }

    Json answerTo(const std::string& script, const Json& arguments) {
        if (script == scripts::awaitContents.source) {
            words.emplace_back("await");
            if (onAwait) onAwait();
            return Json::object({{"documentHeight", height},
                                 {"viewHeight", 792},
                                 {"isSingleMedia", isSingleMedia},
                                 {"failedImages", failed}});
        }
        if (script == scripts::substituteImages.source) {
            words.push_back("substitute " + arguments[0]["value"].serialize());
            failed = {};
        }
        if (script == scripts::presentMedia.source) words.emplace_back("present");
        if (script == scripts::pretendScripts.source) words.emplace_back("pretend");
        if (script == scripts::holdView.source) words.emplace_back("hold");
        if (script == scripts::reveal.source) words.emplace_back("reveal");
        if (script == scripts::conclude.source) {
            words.emplace_back("conclude");
            return imagesPending > 0 ? imagesPending-- : 0;
        }
        return {};
    }

    NSRunLoop& loop_;
    std::vector<NSRunLoop::Posted> answers_;
};

class PageReadinessTest : public ::testing::Test {
protected:
    std::vector<std::string> settle() {
        readiness_.settle({612, 792});
        return page_.words;
    }

    NSRunLoop loop_;
    TallPage page_{loop_};
    DevToolsClient client_{page_, loop_};
    PageWorld world_{client_, "page", "M", {}};
    PageReadiness readiness_{world_, loop_};
};

TEST_F(PageReadinessTest, APageInSightIsAwaitedAndStopped) {
    page_.height = 792;
    EXPECT_THAT(settle(), ElementsAre("await", "pretend", "stop"));
}

TEST_F(PageReadinessTest, ATallerPageIsLookedAtWholeBeforeItIsStopped) {
    EXPECT_THAT(settle(), ElementsAre("await", "hold", "height 3000", "reveal", "await", "pretend", "stop",
                                      "height 792", "conclude"));
}

TEST_F(PageReadinessTest, ASinglePictureIsPresentedBeforeItIsStopped) {
    page_.height = 792;
    page_.isSingleMedia = true;
    EXPECT_THAT(settle(), ElementsAre("await", "present", "pretend", "stop"));
}

TEST_F(PageReadinessTest, TheTallViewHasItsBounds) {
    page_.height = 1e9;
    EXPECT_THAT(settle(), ::testing::Contains("height 100000"));
}

TEST_F(PageReadinessTest, ImagesThatFailedAreChosenAnewFromWhatCanBeHad) {
    page_.failed = Json::array({Json::object({{"chosen", "1x"}, {"candidates", Json::array({"1x", "2x"})}})});
    std::vector<std::string> asked;
    readiness_.setSubstitution([&](const std::string& chosen, const std::vector<std::string>& candidates) {
        asked = candidates;
        return chosen == "1x" ? std::vector<std::string>{"2x"} : std::vector<std::string>();
    });
    EXPECT_THAT(settle(),
                ElementsAre("await", "hold", "height 3000", "reveal", "await", "substitute [\"2x\"]", "await",
                            "pretend", "stop", "height 792", "conclude"));
    EXPECT_THAT(asked, ElementsAre("1x", "2x"));
}

TEST_F(PageReadinessTest, ImagesThatCannotBeHadAreLeftAlone) {
    page_.height = 792;
    page_.failed = Json::array({Json::object({{"chosen", "1x"}, {"candidates", Json::array({"1x"})}})});
    EXPECT_THAT(settle(), ElementsAre("await", "pretend", "stop"));
    page_.words.clear();
    readiness_.setSubstitution([](const auto&, const auto&) { return std::vector<std::string>(); });
    EXPECT_THAT(settle(), ElementsAre("await", "pretend", "stop"));
}

TEST_F(PageReadinessTest, ImagesThatAreChosenAnewAreAwaited) {
    page_.imagesPending = 2;
    const auto words = settle();
    EXPECT_EQ(std::count(words.begin(), words.end(), "conclude"), 3);
}

TEST_F(PageReadinessTest, ImagesThatNeverComeAreNotAwaitedForLong) {
    page_.imagesPending = 1'000'000;
    const auto start = steady_clock::now();
    settle();
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(5));
}

TEST_F(PageReadinessTest, WhatIsUnderWayIsAwaited) {
    page_.height = 792;
    int busy = 3;
    readiness_.setBusyCheck([&] { return busy-- > 0; });
    EXPECT_THAT(settle(), ElementsAre("await", "pretend", "stop"));
    EXPECT_LE(busy, 0);
}

TEST_F(PageReadinessTest, WhatComesOfTheWaitIsAwaitedAgain) {
    page_.height = 792;
    bool busy = false;
    page_.onAwait = [&] { busy = page_.words.size() == 1; };
    readiness_.setBusyCheck([&] { return std::exchange(busy, false); });
    EXPECT_THAT(settle(), ElementsAre("await", "await", "pretend", "stop"));
}

TEST_F(PageReadinessTest, APageThatIsAlwaysBusyIsNotAwaitedForEver) {
    readiness_.setBusyCheck([] { return true; });
    const auto start = steady_clock::now();
    EXPECT_EQ(settle().back(), "conclude");
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(15));
}

TEST_F(PageReadinessTest, ASilentPageIsInterruptedAndStoppedOnly) {
    page_.isSilent = true;
    const auto words = settle();
    EXPECT_THAT(words, ::testing::Each("stop"));
    EXPECT_TRUE(world_.isInterrupted());
}

} // namespace
} // namespace qrv::engine
