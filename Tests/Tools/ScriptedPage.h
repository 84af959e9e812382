#pragma once

// A page that loads nothing: a test plays its part by calling the client, and finds what was asked of the
// page.

#include "Platform/WebKit/WebView.h"

#include <functional>
#include <map>
#include <string>

namespace qrv {

class ScriptedPage final : public engine::Page {
public:
    explicit ScriptedPage(engine::PageClient& owner) : client(owner) { latest = this; }

    ~ScriptedPage() override {
        if (latest == this) latest = nullptr;
    }

    void loadArchive(const WebArchive& archive) override {
        loadedArchive = archive;
        wasPreparedForLoad = expectedScreenPaper != NSSize() || expectedPrintPaper != NSSize();
        if (onLoad) onLoad(client);
    }

    void setViewSize(NSSize size) override { viewSize = size; }

    void prepareForScreenPDF(NSSize paperSize) override { expectedScreenPaper = paperSize; }

    void prepareForPaginatedPDF(NSSize paperSize, double printMargin) override {
        expectedPrintPaper = paperSize;
        expectedMargin = printMargin;
    }

    void setMediaStyle(const NSString& style) override { mediaStyle = style; }

    void setPrintsBackgrounds(bool prints) override { printsBackgrounds = prints; }

    void setUnrollsScrollers(bool unrolls) override { unrollsScrollers = unrolls; }

    NSString engineVersion() override {
        ++versionsAsked;
        return u"Renderer/1.2.3";
    }

    NSString ownerElementName(const engine::FrameID& frame) override { return ownerElements[frame]; }

    NSSize documentSize() override { return documentSizeToAnswer; }

    NSData screenPDF() override {
        ++screenPDFs;
        return pdfToAnswer;
    }

    NSData paginatedPDF(NSSize paperSize, double printMargin) override {
        ++paginatedPDFs;
        paper = paperSize;
        margin = printMargin;
        return pdfToAnswer;
    }

    /// Committed, titled (unless nil) and finished, in the main frame.
    void loadPage(const NSString& url, const NSString& title = {}) {
        client.loadCommitted(engine::mainFrame, NSURL::URLWithString(url), u"text/html");
        if (title) client.titleChanged(engine::mainFrame, title);
        client.loadFinished(engine::mainFrame);
    }

    /// The page that the last view has; null when there is none.
    inline static ScriptedPage* latest = nullptr;
    /// Plays the page's part when a load starts, in every page.
    inline static std::function<void(engine::PageClient&)> onLoad;

    engine::PageClient& client;
    WebArchive loadedArchive;
    NSSize viewSize;
    bool wasPreparedForLoad = false;
    NSSize expectedScreenPaper;
    NSSize expectedPrintPaper;
    double expectedMargin = 0;
    NSString mediaStyle;
    bool printsBackgrounds = false;
    bool unrollsScrollers = false;
    std::map<engine::FrameID, NSString> ownerElements;
    NSSize documentSizeToAnswer{612, 792};
    NSData pdfToAnswer;
    int versionsAsked = 0;
    int screenPDFs = 0;
    int paginatedPDFs = 0;
    NSSize paper;
    double margin = 0;
};

} // namespace qrv
