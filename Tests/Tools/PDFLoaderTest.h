#pragma once

// A loader of archives over a scripted page, and a view that writes down how it is drawn.

#include "Platform/AppKit/NSApplication.h"
#include "Platform/AppKit/NSPrintInfo.h"
#include "Platform/PDFKit/PDFDocument.h"
#include "Source/Tools/PDFLoader.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Tools/ToolTest.h"

namespace qrv {

/// One empty page whose information names the program that rendered it.
inline NSData smallPDF() {
    return NSData(makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                           "<</Type /Page /Parent 2 0 R /MediaBox [0 0 612 792]>>",
                           "<</Creator (Renderer) /Producer (Renderer 1)>>"},
                          "/Info 4 0 R"));
}

/// A loader with its insides open.
class OpenedLoader final : public PDFLoader {
public:
    using Loader::_error;
    using Loader::_view;
    using PDFLoader::_uid;
    using PDFLoader::_url;
    using PDFLoader::_window;
    using PDFLoader::printToFile;
    using PDFLoader::writeScreenPDF;
};

/// Writes down what it is asked, and has its size only once it is laid out.
class RecordingView final : public NSView {
public:
    RecordingView() : NSView(NSRect{{5, 6}, {10, 20}}) {}

    void setFrame(NSRect frame) override {
        NSView::setFrame(frame);
        note("setFrame", frame);
    }

    void layout() override {
        calls.emplace_back("layout");
        NSView::setFrame({{}, {300, 4000}});
    }

    NSData dataWithPDFInsideRect(NSRect rect) override {
        note("draw", rect);
        return smallPDF();
    }

    NSData dataForPrinting(const NSPrintInfo& printInfo) override {
        settings = std::make_unique<NSPrintInfo>(printInfo);
        return smallPDF();
    }

    void note(const char* what, NSRect rect) {
        calls.push_back(NSString::stringWithFormat(u"%s %g %g %g %g", what, rect.origin.x, rect.origin.y,
                                                   rect.size.width, rect.size.height)
                            .utf8());
    }

    std::vector<std::string> calls;
    std::unique_ptr<NSPrintInfo> settings;
};

class PDFLoaderTest : public ToolTest {
protected:
    PDFLoaderTest() {
        setSettings("<key>WebToolExtraLoadingTime</key><integer>0</integer>");
        setMode(u"screen");
        NSApplicationLoad();
    }

    static void setMode(const char16_t* mode) {
        NSProcessInfo::processInfo().setArgumentsForTesting(
            NSArray({NSString(u"web2pdf"), NSString(mode), NSString(u"-"), NSString(u"-"), NSString(u"-")}));
    }

    static ScriptedPage& page() { return *ScriptedPage::latest; }

    static engine::PageClient& client() { return page().client; }

    /// The path of an archive of an empty page; without a URL for nil.
    NSString archive(const NSString& url) const {
        NSMutableDictionary resource;
        resource.setObject_forKey(NSData("<p>"), NSString(u"WebResourceData"));
        resource.setObject_forKey(NSString(u"text/html"), NSString(u"WebResourceMIMEType"));
        if (url) resource.setObject_forKey(url, NSString(u"WebResourceURL"));
        const NSData data =
            dataFromPropertyList(NSDictionary{{NSString(u"WebMainResource"), resource.copy()}});
        return folder.write("page.webarchive", data.bytes());
    }

    /// Loads an archive of this page, which arrives in the next slice.
    void load(const NSString& url, const NSString& title = {}) {
        time.inNextSlice([=] { page().loadPage(url, title); });
        loader.loadWebArchivePath_uid(archive(url), u"uid");
        page().pdfToAnswer = smallPDF();
    }

    NSString pdfPath() const { return folder.pathOf("page.pdf"); }

    std::optional<int> save() {
        return exitStatusOf([this] { loader.savePDF(pdfPath()); });
    }

    void expectSuccess() const {
        EXPECT_EQ(resultKeys(), "succeeded path");
        EXPECT_EQ(result().objectForKey(NSString(u"path")), id(pdfPath()));
    }

    void expectError(const char16_t* domain, long long code, const NSString& path) const {
        EXPECT_EQ(resultError().domain(), NSString(domain));
        EXPECT_EQ(resultError().code(), code);
        EXPECT_EQ(resultError().userInfo().objectForKey(NSString(NSFilePathErrorKey)), id(path));
    }

    std::string attribute(const char16_t* key) const {
        const auto document = PDFDocument::initWithURL(NSURL::fileURLWithPath(pdfPath()));
        if (!document) return "no document";
        const id value = document->documentAttributes().objectForKey(NSString(key));
        return value ? value.description().utf8() : "nothing";
    }

    /// The Author for a page of this address.
    std::string authorFor(const char16_t* url) {
        load(url);
        EXPECT_EQ(save(), 0);
        return attribute(PDFDocumentAuthorAttribute);
    }

    PDFLoader loader;
};

} // namespace qrv
