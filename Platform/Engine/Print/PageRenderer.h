#pragma once

// Turns a loaded page into PDF. Every operation runs the loop until the engine has answered. Once the first
// one has been called, the page's scripts stand still: what is measured is what is printed.

#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Engine/DevTools/PageWorld.h"
#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Platform/Engine/Print/DocumentDescription.h"
#include "Platform/Engine/Print/PageMeasurements.h"
#include "Platform/Engine/Print/PageReadiness.h"
#include "Platform/Engine/Print/PrintPlan.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSRange.h"

#include <functional>
#include <optional>
#include <string>

namespace qrv::engine {

class PageRenderer {
public:
    using LinkMapping = std::function<std::string(const std::string&)>;

    /// All must outlive the renderer. The session and the world are the page's.
    PageRenderer(DevToolsClient& devTools, NSRunLoop& loop, std::string session, PageWorld& world);

    /// Lays the page out in a view of this size (points, a CSS px each) from now on, unless another one is
    /// expected.
    void setViewSize(NSSize size);

    /// Lays the page out in the view (CSS px) of the PDF that is going to be asked for.
    void expectView(NSSize view);

    void setMediaStyle(std::string mediaStyle) { mediaStyle_ = std::move(mediaStyle); }

    void setPrintsBackgrounds(bool prints) { printsBackgrounds_ = prints; }

    /// Whether boxes that scroll show all that they hold; true unless set.
    void setUnrollsScrollers(bool unrolls) { unrollsScrollers_ = unrolls; }

    /// For what has to be known before the page is drawn.
    PageReadiness& readiness() { return readiness_; }

    /// Changes the addresses that links in the PDF lead to.
    void setLinkMapping(LinkMapping mapping) { linkMapping_ = std::move(mapping); }

    /// How much of the paint that costs the engine far more on paper than on the screen is left out: 0 for
    /// none, 1 for blurs, filters and masks, 2 for shadows as well.
    void setPaintLevel(int level) { paintLevel_ = level; }

    static constexpr int highestPaintLevel = 2;

    /// True when a page with such paint took too long to print: the next level may help. The engine is still
    /// at it, and does not answer before it is done.
    bool needsLessPaint() const { return needsLessPaint_; }

    /// How long the engine may take to print a page of which a higher level would leave something out; eight
    /// seconds unless set, and half as much more for its height as below.
    void setCostlyPrintLimit(std::chrono::milliseconds limit) { costlyPrintLimit_ = limit; }

    /// How long the engine may take to print; 30 seconds unless set, and one more for each 10,000 px of the
    /// page's length on sheets, for each 100,000 px on one page; ten minutes at most. A million px of text
    /// take 2.5 s on one page; 2,700 sheets take 23 s.
    void setPrintLimit(std::chrono::milliseconds limit) { printLimit_ = limit; }

    /// The laid-out document in CSS pixels; zero when the page does not answer.
    NSSize documentSize();
    NSData screenPDF();
    NSData paginatedPDF(NSSize paper, double margin);

private:
    void settle(NSSize view);
    const std::optional<PageMeasurements>& measureOnScreen();
    enum class Mode { screen, sheets };
    std::optional<PageMeasurements> measure(NSSize view, Mode mode);
    std::chrono::milliseconds limitFor(const PrintPlan& plan, bool isCostly) const;
    NSData print(const PrintPlan& plan, const PrintPlan& plain);
    int dividedDocument(const PrintPlan& plan);
    std::optional<std::vector<PDFPart>> attempt(const PrintPlan& plan, bool isCostly, int parts);
    DevToolsReply printed(const PrintPlan& plan, std::chrono::milliseconds limit);
    NSData edited(const std::vector<PDFPart>& parts, const PrintPlan& plan,
                  const DocumentDescription& document) const;

    DevToolsClient& devTools_;
    std::string session_;
    PageWorld& world_;
    PageReadiness readiness_;
    NSSize viewSize_{612, 792};
    std::optional<NSSize> expectedView_;
    std::string mediaStyle_;
    bool printsBackgrounds_ = false;
    bool unrollsScrollers_ = true;
    int paintLevel_ = 0;
    bool needsLessPaint_ = false;
    std::chrono::milliseconds costlyPrintLimit_ = std::chrono::seconds(8);
    std::chrono::milliseconds printLimit_ = std::chrono::seconds(30);
    LinkMapping linkMapping_;
    bool settled_ = false;
    std::optional<PageMeasurements> screen_; // what was measured in the view's size
};

} // namespace qrv::engine
