#include "Platform/Engine/Print/PageRenderer.h"

#include "Platform/Engine/PDF/LengthUnits.h"
#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Platform/Engine/Print/PrintLayout.h"
#include "Platform/Engine/Print/ViewMetrics.h"
#include "Platform/Foundation/SourceDate.h"
#include "Platform/Logging/NSLog.h"

#include <algorithm>
#include <chrono>

namespace qrv::engine {

namespace {

// Below the world's patience, so that the page is not taken for one that does not answer.
constexpr std::chrono::milliseconds unrollingLimit{1500};

// The engine's time grows with the square of the sheets' number: what is longer is printed in parts of about
// so many sheets. Short documents stay whole, since each part begins on a new sheet.
constexpr double undividedSheets = 400;
constexpr double sheetsOfPart = 200;
constexpr std::int64_t mostParts = 1000;

// As documents that cannot be divided take the engine: 6,000 sheets take two minutes.
constexpr double longestPrint = 12'000'000; // CSS px
constexpr std::chrono::milliseconds longestTime = std::chrono::minutes(10);

bool isForParts(const PrintPlan& plan, const DocumentDescription& document) {
    const double forBreaks = document.breaks * plan.pageLength;
    return plan.isDivisible && plan.documentLength + forBreaks > undividedSheets * plan.pageLength;
}

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
    const Json few = plan.isDivisible ? Json(undividedSheets / 2) : Json();
    DocumentDescription document =
        documentDescriptionFromJson(world_.call(scripts::describe, {few}).value_or(Json()));
    const bool isDivided = isForParts(plan, document);
    if (document.hasFrames || isDivided) {
        for (const auto& [frame, answer] : world_.callInFrames(scripts::describeFrame, {frameMarker})) {
            if (!answer.isNull()) document.frames.push_back(frameDescriptionFromJson(answer));
        }
    }
    // Also before: each look at the page behind the style sheet has it laid out, which printing does anyway.
    if (plan.isOnSheets) world_.call(scripts::releaseBoxes);
    const bool isCostly = world_.call(scripts::easePaint, {paintLevel_}).value_or(Json()).boolean() &&
                          paintLevel_ < highestPaintLevel;
    const int count = isDivided ? dividedDocument(plan) : 1;
    if (const auto parts = attempt(plan, isCostly, count)) return edited(*parts, plan, document);
    if (!plan.usesViewportPage) return {};
    const auto parts = attempt(plain, isCostly, count);
    return parts ? edited(*parts, plain, document) : NSData();
}

/// Returns the number of parts.
int PageRenderer::dividedDocument(const PrintPlan& plan) {
    const Json parts =
        world_.call(scripts::divide, {sheetsOfPart * plan.pageLength, plan.pageLength}).value_or(Json());
    const std::int64_t count = parts.integer();
    return count >= 1 && count <= mostParts ? static_cast<int>(count) : 1;
}

/// Nothing when the document cannot be printed by this plan; nil when it cannot be printed at all.
std::optional<std::vector<PDFPart>> PageRenderer::attempt(const PrintPlan& plan, bool isCostly, int count) {
    if (plan.isOnSheets && plan.documentLength > longestPrint) {
        NSLog(u"the page is %.0f px long, too long for sheets of paper", plan.documentLength);
        return std::vector<PDFPart>();
    }
    const auto isApplied = world_.call(
        scripts::applyPrintStyle, {plan.styleSheet, plan.imageTarget, plan.imageSource, plan.imagesOnTop});
    if (!isApplied.value_or(Json()).boolean()) return std::nullopt;
    const auto end = std::chrono::steady_clock::now() + limitFor(plan, isCostly);
    std::vector<PDFPart> parts;
    for (int part = 0; part < count; ++part) {
        // Without its part alone in sight, a print would have others twice.
        const auto targets =
            count > 1 ? world_.call(scripts::showPart, {part, count - 1}) : std::optional(Json());
        if (!targets) return std::nullopt;
        const auto rest =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        const DevToolsReply reply = printed(plan, std::max(rest, std::chrono::milliseconds(0)));
        // Another plan would take as long.
        if (reply.status == DevToolsReply::Status::timedOut) {
            needsLessPaint_ = isCostly;
            return std::vector<PDFPart>();
        }
        const NSData pdf = reply.ok() ? reply.result["data"].data() : NSData();
        if (pdf.isNil()) return std::nullopt;
        parts.push_back({pdf, targetsFromJson(*targets)});
    }
    return parts;
}

DevToolsReply PageRenderer::printed(const PrintPlan& plan, std::chrono::milliseconds limit) {
    return devTools_.call(session_, "Page.printToPDF",
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
                          limit);
}

NSData PageRenderer::edited(const std::vector<PDFPart>& parts, const PrintPlan& plan,
                            const DocumentDescription& document) const {
    if (parts.empty()) return {};
    PDFPageEdits edits;
    edits.furtherParts.assign(parts.begin() + 1, parts.end());
    edits.scale = 1 / plan.shrink;
    edits.size = plan.page;
    edits.removesEmptySheetsAtEnd = plan.isOnSheets;
    edits.mapLink = linkMapping_;
    edits.destinations = {plan.viewportPageLength, plan.pageLength, plan.scale * pointsPerPixel,
                          plan.pageMargin, document.targetsInView};
    edits.date = sourceDate();
    edits.language = document.language;
    edits.headings = document.headings;
    edits.frames = document.frames;
    edits.hasOutline = plan.isStructured;
    return confinedPDFByApplying(edits, parts.front().pdf);
}

} // namespace qrv::engine
