#include "Platform/Engine/Print/PageRenderer.h"

#include "Platform/Engine/Print/DocumentDescription.h"
#include "Tests/Platform/Engine/JsonText.h"
#include "Tests/Platform/Engine/ScriptedTransport.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <thread>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Answers each command at once, the way a page would; the test changes single answers.
class AnsweringTransport final : public ScriptedTransport {
public:
    explicit AnsweringTransport(NSRunLoop& loop) : loop_(loop) {}

    SendResult send(const Json& message) override {
        const SendResult result = ScriptedTransport::send(message);
        if (result != SendResult::accepted) return result;
        const Json command = sent.back();
        answers_.push_back(loop_.performSoon(
            [this, command] { answer(command["id"], command["method"].string(), command["params"]); }));
        return result;
    }

    int printsToRefuse = 0;
    bool printsForEver = false;
    int printsBeforeThat = 0;
    std::chrono::milliseconds timeOfPrint{0};
    bool dies = false;
    bool keepsPromises = true;
    std::string scriptThatThrows;
    bool isCostly = false;            // to paint
    std::vector<std::string> easings; // the levels
    Json description;
    std::vector<std::string> prints; // the page ranges asked for, and the parts shown
    int measurements = 0;
    double height = 1000; // of the document, CSS px
    int releases = 0;     // of boxes
    std::vector<std::string> unrollings;
    Json parts = 1;                // into which the document can be divided
    std::vector<double> divisions; // the lengths asked for

private:
    void answer(const Json& id, const std::string& method, const Json& params) {
        if (dies && method == "Page.printToPDF") return end("gone");
        if (method == "Page.createIsolatedWorld") {
            reply(id.integer(), Json::object({{"executionContextId", ++worlds_}}));
        } else if (method == "Runtime.callFunctionOn") {
            call(id, params);
        } else if (method == "Page.printToPDF") {
            prints.push_back(params["pageRanges"].string());
            if (printsForEver && printsBeforeThat-- <= 0) return;
            std::this_thread::sleep_for(timeOfPrint);
            if (printsToRefuse-- > 0) return refuse(id, "Page range exceeds page count");
            const std::string pdf =
                makePDF({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                         "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]>>"});
            reply(id.integer(), Json::object({{"data", NSData(pdf)}}));
        } else {
            reply(id.integer(), Json::object({}));
        }
    }

    void call(const Json& id, const Json& params) {
        if (params["awaitPromise"].boolean() && !keepsPromises) return;
        const std::string script = params["functionDeclaration"].string();
        Json value = true;
        if (script == scripts::measure.source) {
            ++measurements;
            value =
                Json::object({{"view", Json::object({{"width", 612}, {"height", 792}})},
                              {"scroll", Json::object({{"width", 612}, {"height", height}})},
                              {"root", Json::object({{"isHtml", true}, {"width", 612}, {"height", height}})},
                              {"body", Json::object({{"exists", true}})}});
        }
        if (script == scripts::describe.source) value = description;
        if (script == scripts::divide.source) {
            divisions.push_back(params["arguments"].elements()[0]["value"].number());
            value = parts;
        }
        if (script == scripts::showPart.source)
            prints.push_back("part " + jsonText(params["arguments"].elements()[0]["value"]));
        if (script == scripts::releaseBoxes.source) ++releases;
        if (script == scripts::easePaint.source) {
            easings.push_back(jsonText(params["arguments"].elements()[0]["value"]));
            value = isCostly;
        }
        if (script == scripts::unrollScrollers.source) {
            unrollings.push_back("before measurement " + std::to_string(measurements + 1) + ": " +
                                 jsonText(params["arguments"].elements()[0]["value"]));
        }
        reply(id.integer(), script == scriptThatThrows
                                ? Json::object({{"exceptionDetails", Json::object({{"text", "Uncaught"}})}})
                                : Json::object({{"result", Json::object({{"value", value}})}}));
    }

    void refuse(const Json& id, const char* message) {
        receive(Json::object({{"id", id}, {"error", Json::object({{"message", message}})}}));
    }

    NSRunLoop& loop_;
    std::vector<NSRunLoop::Posted> answers_;
    std::int64_t worlds_ = 0;
};

class PageRendererTest : public ::testing::Test {
protected:
    std::size_t countOf(const std::string& method) const {
        return static_cast<std::size_t>(
            std::count_if(transport_.sent.begin(), transport_.sent.end(),
                          [&](const Json& command) { return command["method"].string() == method; }));
    }

    NSRunLoop loop_;
    AnsweringTransport transport_{loop_};
    DevToolsClient client_{transport_, loop_};
    PageWorld world_{client_, "page", "M", {}};
    PageRenderer renderer_{client_, loop_, "page", world_};
};

TEST_F(PageRendererTest, MeasuresAndPrints) {
    EXPECT_EQ(renderer_.documentSize(), (NSSize{612, 1000}));
    EXPECT_THAT(std::string(renderer_.screenPDF().bytes()), HasSubstr("%PDF"));
    EXPECT_THAT(transport_.prints, ElementsAre("2"));
    EXPECT_EQ(countOf("Emulation.setScriptExecutionDisabled"), 1u);
    EXPECT_EQ(countOf("Page.createIsolatedWorld"), 1u);
    EXPECT_EQ(countOf("Runtime.terminateExecution"), 0u);
}

TEST_F(PageRendererTest, APageIsMeasuredOnceInEachMode) {
    EXPECT_EQ(renderer_.documentSize(), (NSSize{612, 1000}));
    EXPECT_EQ(renderer_.documentSize(), (NSSize{612, 1000}));
    EXPECT_FALSE(renderer_.screenPDF().isNil());
    EXPECT_EQ(transport_.measurements, 1);
    renderer_.setViewSize({500, 500});
    EXPECT_FALSE(renderer_.screenPDF().isNil());
    EXPECT_EQ(transport_.measurements, 2);
    EXPECT_FALSE(renderer_.paginatedPDF({612, 792}, 36).isNil());
    EXPECT_EQ(transport_.measurements, 3);
}

TEST_F(PageRendererTest, WhatCannotBeMeasuredIsNotPrinted) {
    transport_.scriptThatThrows = scripts::measure.source;
    EXPECT_EQ(renderer_.documentSize(), NSSize());
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_TRUE(renderer_.paginatedPDF({612, 792}, 36).isNil());
    EXPECT_EQ(countOf("Page.printToPDF"), 0u);
}

TEST_F(PageRendererTest, WhatCannotBeDescribedIsPrinted) {
    transport_.scriptThatThrows = scripts::describe.source;
    EXPECT_FALSE(renderer_.screenPDF().isNil());
}

TEST_F(PageRendererTest, ThePageIsInTheViewOfItsPDFBeforeItsScriptsAreStopped) {
    const auto firstView = [this] {
        for (const Json& command : transport_.sent) {
            if (command["method"].string() == "Emulation.setDeviceMetricsOverride") {
                return jsonText(command["params"]);
            }
            if (command["method"].string() == "Emulation.setScriptExecutionDisabled") break;
        }
        return std::string();
    };
    renderer_.paginatedPDF({612, 792}, 36);
    EXPECT_THAT(firstView(), HasSubstr(R"("width":720,"height":960,"screenWidth":720,"screenHeight":960)"));
}

TEST_F(PageRendererTest, AnExpectedViewIsNotLeftForAnotherOne) {
    renderer_.expectView({720, 960});
    renderer_.setViewSize({500, 400});
    renderer_.paginatedPDF({612, 792}, 36);
    for (const Json& command : transport_.sent) {
        EXPECT_THAT(jsonText(command["params"]), ::testing::Not(HasSubstr(R"("width":500)")));
    }
}

TEST_F(PageRendererTest, BoxesThatScrollAreUnrolledBeforeThePageIsMeasured) {
    renderer_.screenPDF();
    renderer_.paginatedPDF({612, 792}, 36);
    EXPECT_THAT(transport_.unrollings,
                ElementsAre("before measurement 1: false", "before measurement 2: true"));
}

TEST_F(PageRendererTest, BoxesThatScrollStayAsTheyAreWhenTheyAreNotToBeUnrolled) {
    renderer_.setUnrollsScrollers(false);
    renderer_.screenPDF();
    renderer_.paginatedPDF({612, 792}, 36);
    EXPECT_THAT(transport_.unrollings, ElementsAre());
}

TEST_F(PageRendererTest, OnlySheetsReleaseBoxes) {
    renderer_.screenPDF();
    EXPECT_EQ(transport_.releases, 0);
    renderer_.paginatedPDF({612, 792}, 36);
    EXPECT_EQ(transport_.releases, 1);
}

// Whatever is asked there has the page laid out once more.
TEST_F(PageRendererTest, NothingIsAskedBetweenTheStyleSheetAndThePrint) {
    renderer_.paginatedPDF({612, 792}, 36);
    const auto print = std::find_if(transport_.sent.begin(), transport_.sent.end(), [](const Json& command) {
        return command["method"].string() == "Page.printToPDF";
    });
    ASSERT_NE(print, transport_.sent.end());
    EXPECT_EQ((*std::prev(print))["params"]["functionDeclaration"].string(), scripts::applyPrintStyle.source);
}

TEST_F(PageRendererTest, APageThatNeverGetsReadyIsInterruptedOnce) {
    transport_.keepsPromises = false;
    EXPECT_FALSE(renderer_.screenPDF().isNil());
    EXPECT_EQ(countOf("Runtime.terminateExecution"), 1u);
    std::size_t promises = 0;
    for (const Json& command : transport_.sent)
        promises += command["params"]["awaitPromise"].boolean() ? 1 : 0;
    EXPECT_EQ(promises, 1u);
}

TEST_F(PageRendererTest, TheDocumentsLanguageIsThatOfThePDF) {
    transport_.description = Json::object({{"language", "de-CH"}});
    const TemporaryFolder folder;
    folder.write("out.pdf", renderer_.screenPDF().bytes());
    EXPECT_EQ(outputOf("mutool show '" + (folder.path() / "out.pdf").string() + "' trailer/Root/Lang"),
              "(de-CH)\n");
}

TEST_F(PageRendererTest, WhatCannotBePrintedBehindAPageIsPrintedPlainly) {
    transport_.printsToRefuse = 1;
    EXPECT_FALSE(renderer_.screenPDF().isNil());
    EXPECT_THAT(transport_.prints, ElementsAre("2", ::testing::Ne("2")));
}

TEST_F(PageRendererTest, WhatCannotBePrintedAtAllIsNil) {
    transport_.printsToRefuse = 2;
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_EQ(transport_.prints.size(), 2u);
}

TEST_F(PageRendererTest, WhatTakesTooLongIsNotPrintedOnceMore) {
    transport_.printsForEver = true;
    renderer_.setPrintLimit(std::chrono::milliseconds(10));
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_EQ(transport_.prints.size(), 1u);
}

TEST_F(PageRendererTest, WhatTakesTooLongNeedsLessPaintIfThereIsMuch) {
    transport_.printsForEver = true;
    transport_.isCostly = true;
    renderer_.setCostlyPrintLimit(std::chrono::milliseconds(10));
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_TRUE(renderer_.needsLessPaint());
    EXPECT_EQ(transport_.prints.size(), 1u);
}

TEST_F(PageRendererTest, WhatIsTooHighForSheetsIsNotPrintedOnThem) {
    transport_.height = 12'000'001;
    EXPECT_TRUE(renderer_.paginatedPDF({612, 792}, 36).isNil());
    EXPECT_EQ(transport_.prints.size(), 0u);
    EXPECT_FALSE(renderer_.screenPDF().isNil());
}

TEST_F(PageRendererTest, WhatIsJustNotTooHighForSheetsIsPrinted) {
    transport_.height = 12'000'000;
    EXPECT_FALSE(renderer_.paginatedPDF({612, 792}, 36).isNil());
}

std::size_t pagesIn(const NSData& pdf) {
    const std::string bytes(pdf.bytes());
    const TemporaryFolder folder;
    folder.write("out.pdf", bytes);
    return std::stoul(
        outputOf("mutool show '" + (folder.path() / "out.pdf").string() + "' trailer/Root/Pages/Count"));
}

TEST_F(PageRendererTest, ManySheetsArePrintedInParts) {
    transport_.height = 500'000;
    transport_.parts = 3;
    EXPECT_EQ(pagesIn(renderer_.paginatedPDF({612, 792}, 36)), 3u);
    EXPECT_THAT(transport_.prints, ElementsAre("part 0", "2-", "part 1", "2-", "part 2", "2-"));
    EXPECT_THAT(transport_.divisions, ElementsAre(::testing::DoubleNear(200 * 960, 1)));
}

TEST_F(PageRendererTest, BreaksMakeManySheetsOfAShortDocument) {
    transport_.parts = 2;
    transport_.description = Json::object({{"breaks", 401}});
    EXPECT_EQ(pagesIn(renderer_.paginatedPDF({612, 792}, 36)), 2u);
    EXPECT_THAT(transport_.divisions, ElementsAre(::testing::DoubleNear(200 * 960, 1)));
    transport_.description = Json::object({{"breaks", 398}});
    EXPECT_EQ(pagesIn(renderer_.paginatedPDF({612, 792}, 36)), 1u);
    EXPECT_EQ(pagesIn(renderer_.screenPDF()), 1u);
    EXPECT_THAT(transport_.divisions, ::testing::SizeIs(1));
}

TEST_F(PageRendererTest, FewSheetsArePrintedAtOnce) {
    transport_.height = 380'000;
    transport_.parts = 3;
    EXPECT_EQ(pagesIn(renderer_.paginatedPDF({612, 792}, 36)), 1u);
    EXPECT_THAT(transport_.divisions, ElementsAre());
    transport_.height = 500'000;
    renderer_.setViewSize({500, 500});
    EXPECT_EQ(pagesIn(renderer_.screenPDF()), 1u);
    EXPECT_THAT(transport_.divisions, ElementsAre());
}

TEST_F(PageRendererTest, WhatCannotBeDividedIsPrintedAtOnce) {
    transport_.height = 500'000;
    for (const Json& parts : {Json(1), Json(0), Json(-5), Json(1001), Json("many"), Json()}) {
        transport_.parts = parts;
        transport_.prints.clear();
        EXPECT_FALSE(renderer_.paginatedPDF({612, 792}, 36).isNil());
        EXPECT_THAT(transport_.prints, ElementsAre("2-"));
    }
}

TEST_F(PageRendererTest, APartThatCannotBePrintedFailsThePlan) {
    transport_.height = 500'000;
    transport_.parts = 2;
    transport_.printsToRefuse = 1;
    EXPECT_EQ(pagesIn(renderer_.paginatedPDF({612, 792}, 36)), 2u);
    EXPECT_THAT(transport_.prints, ElementsAre("part 0", "2-", "part 0", "", "part 1", ""));
}

TEST_F(PageRendererTest, AllPartsTogetherHaveTheTimeOfThePrint) {
    transport_.height = 500'000;
    transport_.parts = 2;
    transport_.printsForEver = true;
    transport_.isCostly = true;
    renderer_.setCostlyPrintLimit(std::chrono::seconds(-22)); // and 25 s for the height
    transport_.printsBeforeThat = 1;
    transport_.timeOfPrint = std::chrono::seconds(2);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(renderer_.paginatedPDF({612, 792}, 36).isNil());
    EXPECT_THAT(transport_.prints, ElementsAre("part 0", "2-", "part 1", "2-"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
}

TEST_F(PageRendererTest, APartThatCannotBeShownIsNotPrinted) {
    transport_.height = 500'000;
    transport_.parts = 2;
    transport_.scriptThatThrows = scripts::showPart.source;
    EXPECT_TRUE(renderer_.paginatedPDF({612, 792}, 36).isNil());
    EXPECT_EQ(countOf("Page.printToPDF"), 0u);
}

TEST_F(PageRendererTest, HighPagesMayTakeLongOnSheets) {
    transport_.printsForEver = true;
    transport_.height = 20'000;
    renderer_.setPrintLimit(std::chrono::milliseconds(0));
    auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1800));
    start = std::chrono::steady_clock::now();
    EXPECT_TRUE(renderer_.paginatedPDF({612, 792}, 36).isNil());
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(PageRendererTest, WhatHasNoSuchPaintMayTakeLong) {
    transport_.printsForEver = true;
    renderer_.setCostlyPrintLimit(std::chrono::milliseconds(0));
    renderer_.setPrintLimit(std::chrono::milliseconds(10));
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_FALSE(renderer_.needsLessPaint());
}

TEST_F(PageRendererTest, AtTheHighestLevelNothingMoreIsLeftOut) {
    transport_.printsForEver = true;
    transport_.isCostly = true;
    renderer_.setPaintLevel(PageRenderer::highestPaintLevel);
    renderer_.setPrintLimit(std::chrono::milliseconds(10));
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_FALSE(renderer_.needsLessPaint());
    EXPECT_THAT(transport_.easings, ElementsAre("2"));
}

TEST_F(PageRendererTest, AConnectionThatEndsWhilePrintingEndsThePrinting) {
    transport_.dies = true;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(renderer_.screenPDF().isNil());
    EXPECT_TRUE(renderer_.paginatedPDF({612, 792}, 36).isNil());
    EXPECT_EQ(countOf("Page.printToPDF"), 1u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(PageRendererTest, SettingsReachThePage) {
    renderer_.setMediaStyle("print");
    renderer_.setPrintsBackgrounds(true);
    renderer_.setViewSize({800, 600});
    renderer_.screenPDF();
    std::string all;
    for (const Json& command : transport_.sent) all += jsonText(command["params"]);
    EXPECT_THAT(all, HasSubstr(R"({"media":"print"})"));
    EXPECT_THAT(all, HasSubstr(R"("printBackground":true)"));
    EXPECT_THAT(all, HasSubstr(R"("generateTaggedPDF":true,"generateDocumentOutline":true)"));
    EXPECT_THAT(all, HasSubstr(R"("width":800,"height":600)"));
}

} // namespace
} // namespace qrv::engine
