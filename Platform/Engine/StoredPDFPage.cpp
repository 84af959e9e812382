#include "Platform/Engine/StoredPDFPage.h"

#include "Platform/Engine/Address/MIMEType.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/PDFKit/ConfinedPDF.h"

namespace qrv::engine {

namespace {

class StoredPDFPage final : public Page {
public:
    explicit StoredPDFPage(PageClient& client) : client_(client) {}

    void loadArchive(const WebArchive& archive) override {
        resource_ = archive.mainResource();
        delivery_ = NSRunLoop::currentRunLoop().performSoon([this] { deliver(); });
    }

    void setViewSize(NSSize size) override { viewSize_ = size; }

    void prepareForScreenPDF(NSSize /*paper*/) override {}

    void prepareForPaginatedPDF(NSSize /*paper*/, double /*margin*/) override {}

    void setMediaStyle(const NSString& /*mediaStyle*/) override {}

    void setPrintsBackgrounds(bool /*prints*/) override {}

    void setUnrollsScrollers(bool /*unrolls*/) override {}

    void waitForLoad() override { deliver(); }

    NSString ownerElementName(const FrameID& /*frame*/) override { return {}; }

    /// The pages of the file have sizes of their own, which a view of any size shows.
    NSSize documentSize() override { return viewSize_; }

    NSData screenPDF() override { return file(); }

    NSData paginatedPDF(NSSize /*paper*/, double /*margin*/) override { return file(); }

private:
    void deliver() {
        if (!resource_ || delivered_) return;
        delivered_ = true;
        client_.progressChanged(1);
        client_.loadCommitted(mainFrame, resource_.URL(), resource_.MIMEType());
        client_.loadFinished(mainFrame);
    }

    NSData file() const { return mayBeReadablePDF(resource_.data()) ? resource_.data() : NSData(); }

    PageClient& client_;
    WebResource resource_;
    NSSize viewSize_;
    bool delivered_ = false;
    NSRunLoop::Posted delivery_;
};

} // namespace

bool isPDFArchive(const WebArchive& archive) {
    return MIMEType(archive.mainResource().MIMEType().utf8()).isPDF();
}

std::unique_ptr<Page> makeStoredPDFPage(PageClient& client) {
    return std::make_unique<StoredPDFPage>(client);
}

} // namespace qrv::engine
