#include "Platform/Engine/Print/PageReadiness.h"

#include "Tests/Platform/Engine/JsonText.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>

namespace qrv::engine {
namespace {

using std::chrono::steady_clock;
using ::testing::ElementsAre;

/// A page of a certain height that answers at once, and writes down what it is told, in a word each.
class TallPage final : public ScriptedTransport {
public:
    explicit TallPage(NSRunLoop& loop) : loop_(loop) {}

    SendResult send(const Json& message) override {
        ScriptedTransport::send(message);
        answers_.push_back(loop_.performSoon([this, command = sent.back()] { answer(command); }));
        return SendResult::accepted;
    }

    double height = 3000;
    int imagesPending = 0; // for so many questions
    Json failed;
    std::map<std::int64_t, Json> pictures; // that are in use at each density
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
            const std::int64_t density = params["deviceScaleFactor"].integer();
            words.push_back(params["height"].integer() == 792 && density != density_
                                ? "density " + std::to_string(density)
                                : "height " + std::to_string(params["height"].integer()));
            density_ = density;
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
            words.push_back("substitute " + jsonText(arguments[0]["value"]));
            failed = {};
        }
        if (script == scripts::picturesInUse.source) {
            words.push_back("pictures " + std::to_string(arguments[0]["value"].integer()));
            return pictures[arguments[0]["value"].integer()];
        }
        if (script == scripts::renewImageSets.source) words.emplace_back("renew");
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
    std::int64_t density_ = 1;
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

class DensityTest : public PageReadinessTest {
protected:
    DensityTest() {
        page_.height = 700;
        readiness_.setPictures(
            {.mayBeOthers = [this] { return mayBeOthers_; },
             .canBeHad = [](const std::string& address) { return address.starts_with("held"); },
             .dismiss = [this](const std::string& address) { dismissed_.push_back(address); }});
    }

    void setPictures(const Json& single, const Json& twice, const Json& triple) {
        page_.pictures = {{1, single}, {2, twice}, {3, triple}};
    }

    bool mayBeOthers_ = true;
    std::vector<std::string> dismissed_;
};

TEST_F(DensityTest, OtherDensitiesAreNotLookedAtWithoutCause) {
    mayBeOthers_ = false;
    EXPECT_THAT(settle(), ElementsAre("await", "pretend", "stop"));
    mayBeOthers_ = true;
    setPictures(Json::array({"held"}), {}, {});
    page_.words.clear();
    EXPECT_THAT(settle(), ElementsAre("await", "pictures 1", "pretend", "stop"));
    EXPECT_EQ(readiness_.density(), 1);
}

TEST_F(DensityTest, IsTheFirstAtWhichNothingIsMissing) {
    setPictures(Json::array({"1", "held"}), Json::array({"held"}), Json::array({"held"}));
    EXPECT_THAT(settle(), ElementsAre("await", "pictures 1", "density 2", "height 792", "renew", "await",
                                      "pictures 2", "pretend", "stop"));
    EXPECT_EQ(readiness_.density(), 2);
    EXPECT_THAT(dismissed_, ElementsAre("1"));
}

TEST_F(DensityTest, IsThatAtWhichTheFewestAreMissing) {
    setPictures(Json::array({"1", "a", "b"}), Json::array({"2", "b"}), Json::array({"3", "3", "b"}));
    settle();
    EXPECT_EQ(readiness_.density(), 2);
    EXPECT_THAT(dismissed_, ElementsAre("1", "3", "a"));
}

TEST_F(DensityTest, StaysOneWhenNoOtherIsBetter) {
    setPictures(Json::array({"gone"}), Json::array({"gone"}), Json::array({"gone", "3"}));
    EXPECT_THAT(settle(), ::testing::Contains("density 1"));
    EXPECT_EQ(readiness_.density(), 1);
    EXPECT_THAT(dismissed_, ElementsAre("3"));
}

TEST_F(DensityTest, OfATallPageIsKept) {
    page_.height = 3000;
    setPictures(Json::array({"1"}), Json::array({"held"}), {});
    settle();
    const auto isTall = [](const Json& command) { return command["params"]["height"].integer() == 3000; };
    const auto tall = std::find_if(page_.sent.begin(), page_.sent.end(), isTall);
    ASSERT_NE(tall, page_.sent.end());
    EXPECT_EQ((*tall)["params"]["deviceScaleFactor"].integer(), 2);
    EXPECT_EQ(page_.sent.back()["params"]["deviceScaleFactor"].integer(2), 2);
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
