#include "Platform/WebKit/WebView.h"

#include "Platform/Engine/EnginePage.h"
#include "Platform/Engine/StoredPDFPage.h"
#include "Platform/Foundation/NSNotificationCenter.h"
#include "Platform/Foundation/NSNumber.h"

#include <algorithm>

namespace qrv {

namespace {

engine::PageFactory& testFactory() {
    static engine::PageFactory factory;
    return factory;
}

std::unique_ptr<engine::Page> makePage(engine::PageClient& client) {
    return testFactory() ? testFactory()(client) : engine::makeEnginePage(client);
}

/// Stores the answer; false if there was none.
class DecisionListener final : public WebPolicyDecisionListener {
public:
    void use() override { answer_ = true; }

    void ignore() override { answer_ = false; }

    bool answer() const { return answer_; }

private:
    bool answer_ = false;
};

WebNavigationType platformType(engine::NavigationType type) {
    switch (type) {
    case engine::NavigationType::linkClicked:
        return WebNavigationTypeLinkClicked;
    case engine::NavigationType::formSubmitted:
        return WebNavigationTypeFormSubmitted;
    case engine::NavigationType::backForward:
        return WebNavigationTypeBackForward;
    case engine::NavigationType::reload:
        return WebNavigationTypeReload;
    case engine::NavigationType::formResubmitted:
        return WebNavigationTypeFormResubmitted;
    case engine::NavigationType::other:
        break;
    }
    return WebNavigationTypeOther;
}

NSDictionary actionInformation(WebNavigationType type, const NSURL& url) {
    NSMutableDictionary information;
    information.setObject_forKey(NSNumber::numberWithInteger(type), NSString(WebActionNavigationTypeKey));
    if (url) information.setObject_forKey(url, NSString(WebActionOriginalURLKey));
    return std::move(information).copy();
}

/// Does nothing: the engine cancels every challenge that it reports.
class CancellingSender final : public NSURLAuthenticationChallengeSender {
public:
    void cancelAuthenticationChallenge(const NSURLAuthenticationChallenge& /*challenge*/) override {}
};

} // namespace

WebView::WebView(NSRect frame, const NSString& /*frameName*/, const NSString& /*groupName*/)
    : NSView(frame), mainFrame_(std::make_shared<WebFrame>(*this, engine::mainFrame)) {
    frames_.emplace(engine::mainFrame, mainFrame_);
    page_ = makePage(*this);
    page_->setViewSize(frame.size);
}

void WebView::allowViews(FileRules& rules) {
    engine::allowEnginePages(rules);
}

WebView::~WebView() {
    page_.reset();
    for (const auto& [identifier, frame] : frames_) frame->view_ = nullptr;
}

void WebView::setMediaStyle(const NSString& mediaStyle) {
    page_->setMediaStyle(mediaStyle);
}

void WebView::prepareForPDF(NSSize paper) {
    page_->prepareForScreenPDF(paper);
}

void WebView::prepareForPrinting(NSSize paper, double margin) {
    page_->prepareForPaginatedPDF(paper, margin);
}

void WebView::setFrame(NSRect frame) {
    NSView::setFrame(frame);
    page_->setViewSize(frame.size);
}

engine::Page& WebView::page() {
    page_->setPrintsBackgrounds(preferences_.shouldPrintBackgrounds());
    page_->setUnrollsScrollers(preferences_.unrollsScrollers());
    return *page_;
}

void WebView::setPageFactoryForTesting(engine::PageFactory factory) {
    testFactory() = std::move(factory);
}

void WebView::loadArchiveInFrame(const WebArchive& archive, WebFrame& frame) {
    if (archive.isNil() || &frame != mainFrame_.get()) return;
    const NSURL url = archive.mainResource().URL();
    if (!shouldNavigate(engine::mainFrame, engine::NavigationType::other, url)) return;
    loadStarted(engine::mainFrame, url);
    // A PDF file is not rendered, so the engine is not needed any more.
    if (engine::isPDFArchive(archive)) {
        page_ = engine::makeStoredPDFPage(*this);
        page_->setViewSize(this->frame().size);
    }
    page_->loadArchive(archive);
}

WebFramePtr WebView::frameWithID(const engine::FrameID& frame) const {
    const auto found = frames_.find(frame);
    return found == frames_.end() ? nullptr : found->second;
}

void WebView::frameAttached(const engine::FrameID& frame, const engine::FrameID& parent) {
    const WebFramePtr parentFrame = frameWithID(parent);
    if (!parentFrame || frameWithID(frame)) return;
    const auto child = std::make_shared<WebFrame>(*this, frame);
    child->parent_ = parentFrame;
    parentFrame->childFrames_.push_back(child);
    frames_.emplace(frame, child);
}

void WebView::frameDetached(const engine::FrameID& frame) {
    if (const WebFramePtr gone = frameWithID(frame); gone && gone != mainFrame_) detach(gone);
}

/// Detaches children first. A frame that is removed while it loads has failed, so that nobody waits for it.
/// It is kept alive here, since the lists that own it change.
void WebView::detach(const WebFramePtr& leaving) {
    const WebFramePtr frame = leaving; // NOLINT(performance-unnecessary-copy-initialization)
    while (!frame->childFrames_.empty()) detach(frame->childFrames_.back());
    if (frame->loading_) {
        loadFailed(frame->identifier_,
                   NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, NSURLErrorCancelled, {}));
    }
    if (const WebFramePtr parent = frame->parent_.lock()) std::erase(parent->childFrames_, frame);
    frame->view_ = nullptr;
    frames_.erase(frame->identifier_);
}

void WebView::loadStarted(const engine::FrameID& identifier, const NSURL& url) {
    const WebFramePtr frame = frameWithID(identifier);
    if (!frame) return;
    frame->provisionalDataSource_ = std::make_shared<WebDataSource>(NSURLRequest::requestWithURL(url));
    frame->loading_ = true;
    if (frameLoadDelegate_) frameLoadDelegate_->webView_didStartProvisionalLoadForFrame(*this, frame);
}

void WebView::loadCommitted(const engine::FrameID& identifier, const NSURL& url, const NSString& mimeType) {
    const WebFramePtr frame = frameWithID(identifier);
    if (!frame) return;
    // The old page's frames disappear with it.
    while (!frame->childFrames_.empty()) detach(frame->childFrames_.back());
    frame->dataSource_ = frame->provisionalDataSource_
                             ? std::move(frame->provisionalDataSource_)
                             : std::make_shared<WebDataSource>(NSURLRequest::requestWithURL(url));
    frame->provisionalDataSource_ = nullptr;
    frame->dataSource_->setMainResource(WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        NSData::data(), url, mimeType, {}, {}));
}

void WebView::titleChanged(const engine::FrameID& identifier, const NSString& title) {
    const WebFramePtr frame = frameWithID(identifier);
    if (!frame || !frame->dataSource_ || frame->dataSource_->pageTitle() == title) return;
    frame->dataSource_->setPageTitle(title.length() > 0 ? title : NSString());
    if (title.length() > 0 && frameLoadDelegate_) {
        frameLoadDelegate_->webView_didReceiveTitle_forFrame(*this, title, frame);
    }
}

void WebView::loadFinished(const engine::FrameID& identifier) {
    const WebFramePtr frame = frameWithID(identifier);
    if (!frame || !frame->loading_) return;
    if (frameLoadDelegate_) frameLoadDelegate_->webView_didFinishLoadForFrame(*this, frame);
    endLoading(frame);
}

void WebView::loadFailed(const engine::FrameID& identifier, const NSError& error) {
    const WebFramePtr frame = frameWithID(identifier);
    if (!frame || !frame->loading_) return;
    const bool provisional = frame->provisionalDataSource_ != nullptr;
    frame->provisionalDataSource_ = nullptr;
    if (frameLoadDelegate_ && provisional) {
        frameLoadDelegate_->webView_didFailProvisionalLoadWithError_forFrame(*this, error, frame);
    } else if (frameLoadDelegate_) {
        frameLoadDelegate_->webView_didFailLoadWithError_forFrame(*this, error, frame);
    }
    endLoading(frame);
}

/// A page that had loaded has failed all the same: there is nothing left that could be drawn.
void WebView::pageLost(const NSError& error) {
    if (mainFrame_->loading_) return;
    if (frameLoadDelegate_)
        frameLoadDelegate_->webView_didFailLoadWithError_forFrame(*this, error, mainFrame_);
}

void WebView::endLoading(const WebFramePtr& frame) {
    frame->loading_ = false;
    const bool done = std::none_of(frames_.begin(), frames_.end(),
                                   [](const auto& entry) { return entry.second->loading_; });
    if (!done) return;
    estimatedProgress_ = 1;
    NSNotificationCenter::defaultCenter().postNotificationName_object(WebViewProgressFinishedNotification,
                                                                      this);
}

bool WebView::shouldNavigate(const engine::FrameID& identifier, engine::NavigationType type,
                             const NSURL& url) {
    const WebFramePtr frame = frameWithID(identifier);
    if (!frame) return false;
    if (!policyDelegate_) return true;
    DecisionListener listener;
    policyDelegate_->webView_decidePolicyForNavigationAction_request_frame_decisionListener(
        *this, actionInformation(platformType(type), url), NSURLRequest::requestWithURL(url), frame,
        listener);
    return listener.answer();
}

void WebView::windowRequested(const NSURL& url, const NSString& frameName) {
    if (!policyDelegate_) return;
    DecisionListener listener;
    policyDelegate_->webView_decidePolicyForNewWindowAction_request_newFrameName_decisionListener(
        *this, actionInformation(WebNavigationTypeOther, url), NSURLRequest::requestWithURL(url), frameName,
        listener);
}

void WebView::authenticationRequired(const engine::FrameID& identifier, const NSURL& url) {
    if (!resourceLoadDelegate_) return;
    const WebFramePtr frame = frameWithID(identifier);
    CancellingSender sender;
    const NSURLAuthenticationChallenge challenge(url, sender);
    resourceLoadDelegate_->webView_resource_didReceiveAuthenticationChallenge_fromDataSource(
        *this, url, challenge, frame ? frame->dataSource_ : nullptr);
}

void WebView::progressChanged(double estimated) {
    estimatedProgress_ = std::clamp(estimated, 0.0, 1.0);
}

} // namespace qrv
