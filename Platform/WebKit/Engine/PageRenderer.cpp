#include "Platform/WebKit/Engine/PageRenderer.h"

#include "Platform/Foundation/Base64.h"
#include "Platform/PDFKit/PDFPageEdits.h"
#include "Platform/WebKit/Engine/PageScripts.h"

#include <chrono>

namespace qrv::engine {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A page whose script never ends does not answer either; it is interrupted after this long.
constexpr milliseconds patience = seconds(3);
// For fonts and images that are on their way when rendering begins. The answer must come before the patience
// ends.
constexpr milliseconds readinessLimit = patience - milliseconds(500);
// Printing takes as long as it takes, within reason: 200,000 pixels take a third of a second.
constexpr milliseconds printLimit = std::chrono::minutes(10);

constexpr int maximumTries = 3;

constexpr char stopScripts[] = "Emulation.setScriptExecutionDisabled";

} // namespace

PageRenderer::PageRenderer(DevToolsClient& devTools, std::string session, std::string mainFrameID)
    : devTools_(devTools), session_(std::move(session)), mainFrameID_(std::move(mainFrameID)) {}

DevToolsReply PageRenderer::call(const char* method, const Json& params) {
    return devTools_.call(session_, method, params, patience);
}

bool PageRenderer::makeWorld() {
    const Json params = Json::object({{"frameId", mainFrameID_}, {"worldName", "web2pdf"}});
    world_ = call("Page.createIsolatedWorld", params).result["executionContextId"].integer();
    return world_ != 0;
}

/// Ends a script that does not end by itself, and lets no other begin. Neither command is waited for: where
/// no script was running, the first one is answered only when the next script is.
void PageRenderer::interrupt() {
    interrupted_ = true;
    devTools_.send(session_, "Runtime.terminateExecution");
    devTools_.send(session_, stopScripts, Json::object({{"value", true}}));
}

/// Nothing when the page does not answer. The world dies with a navigation and is made again.
std::optional<Json> PageRenderer::evaluate(const std::string& script, bool awaitsPromise) {
    for (int tries = 0; tries < maximumTries && !devTools_.isClosed(); ++tries) {
        if (world_ == 0 && !makeWorld()) {
            interrupt();
            continue;
        }
        const DevToolsReply reply = call("Runtime.evaluate", Json::object({{"expression", script},
                                                                           {"contextId", world_},
                                                                           {"returnByValue", true},
                                                                           {"awaitPromise", awaitsPromise}}));
        if (reply.ok() && !reply.result.contains("exceptionDetails")) return reply.result["result"]["value"];
        world_ = 0;
        if (reply.status != DevToolsReply::Status::timedOut) continue;
        interrupt();
        // Without scripts, what a promise waits for may never come.
        if (awaitsPromise) break;
    }
    return std::nullopt;
}

/// Waits for what is still on its way, then stops the page's scripts.
void PageRenderer::settle() {
    if (settled_) return;
    settled_ = true;
    // The time limit in the script is a timer, which stands still when scripts do.
    if (!interrupted_) evaluate(readinessScript(readinessLimit), true);
    call(stopScripts, Json::object({{"value", true}}));
    call("Emulation.setEmulatedMedia", Json::object({{"media", mediaStyle_}}));
}

namespace {

constexpr char useMetrics[] = "Emulation.setDeviceMetricsOverride";

Json metrics(LayoutSize view) {
    return Json::object({{"width", static_cast<std::int64_t>(view.width)},
                         {"height", static_cast<std::int64_t>(view.height)},
                         {"deviceScaleFactor", 1},
                         {"mobile", false}});
}

} // namespace

void PageRenderer::setViewSize(NSSize size) {
    viewSize_ = size;
    screen_.reset();
    devTools_.send(session_, useMetrics, metrics(screenView(size.width, size.height)));
}

std::optional<PageMeasurements> PageRenderer::measure(LayoutSize view) {
    settle();
    call(useMetrics, metrics(view));
    const std::optional<Json> answer = evaluate(measuringScript(), false);
    if (!answer || !answer->isObject()) return std::nullopt;
    return pageMeasurementsFromJson(*answer);
}

NSSize PageRenderer::documentSize() {
    screen_ = measure(screenView(viewSize_.width, viewSize_.height));
    if (!screen_) return {};
    const PrintPlan plan = screenPlan(*screen_);
    return {plan.pageWidth, plan.pageHeight};
}

NSData PageRenderer::screenPDF() {
    if (!screen_) documentSize();
    if (!screen_) return {};
    return print(screenPlan(*screen_), plainScreenPlan(*screen_));
}

NSData PageRenderer::paginatedPDF(NSSize paper, double margin) {
    const auto measured = measure(paginatedView(paper.width, paper.height, margin));
    if (!measured) return {};
    return print(paginatedPlan(*measured, paper.width, paper.height, margin),
                 plainPaginatedPlan(*measured, paper.width, paper.height, margin));
}

NSData PageRenderer::print(const PrintPlan& plan, const PrintPlan& plain) {
    if (const auto pdf = attempt(plan)) return edited(*pdf, plan);
    if (!plan.usesViewportPage) return {};
    const auto pdf = attempt(plain);
    return pdf ? edited(*pdf, plain) : NSData();
}

std::optional<NSData> PageRenderer::attempt(const PrintPlan& plan) {
    if (!evaluate(applyingScript(plan), false).value_or(Json()).boolean()) return std::nullopt;
    const DevToolsReply reply = devTools_.call(session_, "Page.printToPDF",
                                               Json::object({{"printBackground", printsBackgrounds_},
                                                             {"preferCSSPageSize", true},
                                                             {"scale", plan.scale},
                                                             {"paperWidth", plan.paperWidth},
                                                             {"paperHeight", plan.paperHeight},
                                                             {"marginTop", 0},
                                                             {"marginBottom", 0},
                                                             {"marginLeft", 0},
                                                             {"marginRight", 0},
                                                             {"pageRanges", plan.pageRanges}}),
                                               printLimit);
    if (!reply.ok()) return std::nullopt;
    std::optional<std::string> pdf = base64Decode(reply.result["data"].stringView());
    return pdf ? std::optional(NSData(std::move(*pdf))) : std::nullopt;
}

NSData PageRenderer::edited(const NSData& pdf, const PrintPlan& plan) const {
    PDFPageEdits edits;
    edits.scale = 1 / plan.shrink;
    edits.size = NSSize{plan.pageWidth, plan.pageHeight};
    edits.mapLink = linkMapping_;
    return pdfByApplying(edits, pdf);
}

std::optional<NSString> PageRenderer::title() {
    const std::optional<Json> title = evaluate("document.title", false);
    if (!title) return std::nullopt;
    return title->stringView().empty() ? NSString() : NSString::fromUTF8(title->stringView());
}

} // namespace qrv::engine
