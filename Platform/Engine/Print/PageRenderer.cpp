#include "Platform/Engine/Print/PageRenderer.h"

#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Platform/Engine/Scripts/PageScripts.h"
#include "Platform/Foundation/Base64.h"

#include <chrono>

namespace qrv::engine {

namespace {

constexpr double pointsPerPixel = 0.75;

} // namespace

PageRenderer::PageRenderer(DevToolsClient& devTools, NSRunLoop& loop, std::string session,
                           std::string mainFrameID)
    : devTools_(devTools), session_(std::move(session)), world_(devTools, session_, std::move(mainFrameID)),
      readiness_(world_, loop) {}

void PageRenderer::settle() {
    if (settled_) return;
    settled_ = true;
    readiness_.settle(screenView(viewSize_.width, viewSize_.height));
    world_.call("Emulation.setEmulatedMedia", Json::object({{"media", mediaStyle_}}));
}

void PageRenderer::setViewSize(NSSize size) {
    viewSize_ = size;
    screen_.reset();
    devTools_.send(session_, useMetrics, metrics(screenView(size.width, size.height)));
}

std::optional<PageMeasurements> PageRenderer::measure(LayoutSize view) {
    settle();
    world_.call(useMetrics, metrics(view));
    const std::optional<Json> answer = world_.evaluate(measuringScript());
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
    // Before a style sheet moves anything.
    const DocumentDescription document =
        documentDescriptionFromJson(world_.evaluate(describingScript()).value_or(Json()));
    if (const auto pdf = attempt(plan)) return edited(*pdf, plan, document);
    if (!plan.usesViewportPage) return {};
    const auto pdf = attempt(plain);
    return pdf ? edited(*pdf, plain, document) : NSData();
}

/// Nothing when the document cannot be printed by this plan; nil when it cannot be printed at all.
std::optional<NSData> PageRenderer::attempt(const PrintPlan& plan) {
    if (!world_.evaluate(applyingScript(plan)).value_or(Json()).boolean()) return std::nullopt;
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
                                                             {"pageRanges", plan.pageRanges},
                                                             {"generateTaggedPDF", plan.isStructured},
                                                             {"generateDocumentOutline", plan.isStructured}}),
                                               printLimit_);
    // Another plan would take as long.
    if (reply.status == DevToolsReply::Status::timedOut) return NSData();
    if (!reply.ok()) return std::nullopt;
    std::optional<std::string> pdf = base64Decode(reply.result["data"].stringView());
    return pdf ? std::optional(NSData(std::move(*pdf))) : std::nullopt;
}

NSData PageRenderer::edited(const NSData& pdf, const PrintPlan& plan,
                            const DocumentDescription& document) const {
    PDFPageEdits edits;
    edits.scale = 1 / plan.shrink;
    edits.size = NSSize{plan.pageWidth, plan.pageHeight};
    edits.mapLink = linkMapping_;
    edits.destinations = {plan.viewportPageLength, plan.pageLength, plan.scale * pointsPerPixel,
                          plan.pageMargin, document.targetsInView};
    edits.language = document.language;
    edits.headings = document.headings;
    return pdfByApplying(edits, pdf);
}

std::optional<NSString> PageRenderer::title() {
    const std::optional<Json> title = world_.evaluate("document.title");
    if (!title) return std::nullopt;
    return title->stringView().empty() ? NSString() : NSString::fromUTF8(title->stringView());
}

} // namespace qrv::engine
