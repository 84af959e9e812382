#include "Platform/Engine/Print/PageRenderer.h"

#include "Platform/Engine/PDF/LengthUnits.h"
#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Platform/Engine/Print/PrintLayout.h"
#include "Platform/Engine/Print/ViewMetrics.h"
#include "Platform/Logging/NSLog.h"

#include <algorithm>
#include <chrono>

namespace qrv::engine {

namespace {

// Below the world's patience, so that the page is not taken for one that does not answer.
constexpr std::chrono::milliseconds unrollingLimit{1500};

// The engine's time grows with the square of the sheets' number: 6,000 sheets take two minutes.
constexpr double longestPrint = 12'000'000; // CSS px
constexpr std::chrono::milliseconds longestTime = std::chrono::minutes(10);

} // namespace

PageRenderer::PageRenderer(DevToolsClient& devTools, NSRunLoop& loop, std::string session, PageWorld& world)
    : devTools_(devTools), session_(std::move(session)), world_(world), readiness_(world_, loop) {}

/// In the view of what is printed first, so that the page's scripts have seen that one.
void PageRenderer::settle(NSSize view) {
    if (settled_) return;
    settled_ = true;
    setViewMetrics(world_, view, readiness_.density());
    readiness_.settle(view);
    world_.command("Emulation.setEmulatedMedia", Json::object({{"media", mediaStyle_}}));
}

void PageRenderer::setViewSize(NSSize size) {
    viewSize_ = size;
    screen_.reset();
    if (expectedView_) return;
    devTools_.send(session_, setMetricsCommand, viewMetrics(screenView(size), readiness_.density()));
}

void PageRenderer::expectView(NSSize view) {
    expectedView_ = view;
    devTools_.send(session_, setMetricsCommand, viewMetrics(view, readiness_.density()));
}

std::optional<PageMeasurements> PageRenderer::measure(NSSize view, Mode mode) {
    settle(view);
    setViewMetrics(world_, view, readiness_.density());
    world_.call(scripts::standStill);
    if (unrollsScrollers_)
        world_.call(scripts::unrollScrollers, {mode == Mode::sheets, unrollingLimit.count()});
    const std::optional<Json> answer = world_.call(scripts::measure);
    return answer ? std::optional(pageMeasurementsFromJson(*answer)) : std::nullopt;
}

/// Long pages take their time whatever is painted.
std::chrono::milliseconds PageRenderer::limitFor(const PrintPlan& plan, bool isCostly) const {
    const double pixelsPerMillisecond = (plan.isOnSheets ? 10 : 100) * (isCostly ? 2 : 1);
    const std::chrono::milliseconds forLength(
        static_cast<long long>(plan.documentLength / pixelsPerMillisecond));
    return std::min((isCostly ? costlyPrintLimit_ : printLimit_) + forLength, longestTime);
}

const std::optional<PageMeasurements>& PageRenderer::measureOnScreen() {
    if (!screen_) screen_ = measure(screenView(viewSize_), Mode::screen);
    return screen_;
}

NSSize PageRenderer::documentSize() {
    const auto& measured = measureOnScreen();
    return measured ? NSSize{documentWidth(*measured), documentHeight(*measured)} : NSSize();
}

NSData PageRenderer::screenPDF() {
    const auto& measured = measureOnScreen();
    return measured ? print(screenPlan(*measured), plainScreenPlan(*measured)) : NSData();
}

NSData PageRenderer::paginatedPDF(NSSize paper, double margin) {
    const auto measured = measure(paginatedView(paper, margin), Mode::sheets);
    if (!measured) return {};
    return print(paginatedPlan(*measured, paper, margin), plainPaginatedPlan(*measured, paper, margin));
}

NSData PageRenderer::print(const PrintPlan& plan, const PrintPlan& plain) {
    // Before a style sheet moves anything.
    DocumentDescription document =
        documentDescriptionFromJson(world_.call(scripts::describe).value_or(Json()));
    if (document.hasFrames) {
        for (const auto& [frame, answer] : world_.callInFrames(scripts::describeFrame, {frameMarker})) {
            if (!answer.isNull()) document.frames.push_back(frameDescriptionFromJson(answer));
        }
    }
    // Also before: each look at the page behind the style sheet has it laid out, which printing does anyway.
    if (plan.isOnSheets) world_.call(scripts::releaseBoxes);
    const bool isCostly = world_.call(scripts::easePaint, {paintLevel_}).value_or(Json()).boolean() &&
                          paintLevel_ < highestPaintLevel;
    if (const auto pdf = attempt(plan, isCostly)) return edited(*pdf, plan, document);
    if (!plan.usesViewportPage) return {};
    const auto pdf = attempt(plain, isCostly);
    return pdf ? edited(*pdf, plain, document) : NSData();
}

/// Nothing when the document cannot be printed by this plan; nil when it cannot be printed at all.
std::optional<NSData> PageRenderer::attempt(const PrintPlan& plan, bool isCostly) {
    if (plan.isOnSheets && plan.documentLength > longestPrint) {
        NSLog(u"the page is %.0f px long, too long for sheets of paper", plan.documentLength);
        return NSData();
    }
    const auto isApplied = world_.call(
        scripts::applyPrintStyle, {plan.styleSheet, plan.imageTarget, plan.imageSource, plan.imagesOnTop});
    if (!isApplied.value_or(Json()).boolean()) return std::nullopt;
    const DevToolsReply reply = devTools_.call(session_, "Page.printToPDF",
                                               Json::object({{"printBackground", printsBackgrounds_},
                                                             {"preferCSSPageSize", true},
                                                             {"scale", plan.scale},
                                                             {"paperWidth", plan.paper.width},
                                                             {"paperHeight", plan.paper.height},
                                                             {"marginTop", 0},
                                                             {"marginBottom", 0},
                                                             {"marginLeft", 0},
                                                             {"marginRight", 0},
                                                             {"pageRanges", plan.pageRanges},
                                                             {"generateTaggedPDF", plan.isStructured},
                                                             {"generateDocumentOutline", plan.isStructured}}),
                                               limitFor(plan, isCostly));
    // Another plan would take as long.
    if (reply.status == DevToolsReply::Status::timedOut) {
        needsLessPaint_ = isCostly;
        return NSData();
    }
    if (!reply.ok()) return std::nullopt;
    const NSData pdf = reply.result["data"].data();
    return pdf.isNil() ? std::nullopt : std::optional(pdf);
}

NSData PageRenderer::edited(const NSData& pdf, const PrintPlan& plan,
                            const DocumentDescription& document) const {
    PDFPageEdits edits;
    edits.scale = 1 / plan.shrink;
    edits.size = plan.page;
    edits.removesEmptySheetsAtEnd = plan.isOnSheets;
    edits.mapLink = linkMapping_;
    edits.destinations = {plan.viewportPageLength, plan.pageLength, plan.scale * pointsPerPixel,
                          plan.pageMargin, document.targetsInView};
    edits.language = document.language;
    edits.headings = document.headings;
    edits.frames = document.frames;
    edits.hasOutline = plan.isStructured;
    return confinedPDFByApplying(edits, pdf);
}

} // namespace qrv::engine
