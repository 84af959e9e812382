#pragma once

// An off-screen view that loads a page in an engine and lays it out. It belongs to the thread whose run loop
// is current when it is made; all callbacks arrive there.

#include "Platform/AppKit/NSView.h"
#include "Platform/Confinement/FileRules.h"
#include "Platform/Engine/Page.h"
#include "Platform/WebKit/WebDelegates.h"
#include "Platform/WebKit/WebFrame.h"
#include "Platform/WebKit/WebPreferences.h"

#include <map>
#include <memory>

namespace qrv {

/// Posted by the view when the last loading frame has finished or failed.
inline constexpr char16_t WebViewProgressFinishedNotification[] = u"WebProgressFinishedNotification";

class WebView : public NSView, private engine::PageClient {
public:
    // - initWithFrame:frameName:groupName:
    /// Starts the engine, which boots while the caller goes on. The names have no effect and may be nil.
    WebView(NSRect frame, const NSString& frameName, const NSString& groupName);
    ~WebView() override;

    // - setFrameLoadDelegate:
    void setFrameLoadDelegate(WebFrameLoadDelegate* delegate) { frameLoadDelegate_ = delegate; }

    // - setPolicyDelegate:
    void setPolicyDelegate(WebPolicyDelegate* delegate) { policyDelegate_ = delegate; }

    // - setResourceLoadDelegate:
    void setResourceLoadDelegate(WebResourceLoadDelegate* delegate) { resourceLoadDelegate_ = delegate; }

    // - mainFrame
    /// Never null.
    const WebFramePtr& mainFrame() const { return mainFrame_; }

    // - estimatedProgress
    /// From 0 to 1; 0 before the first load.
    double estimatedProgress() const { return estimatedProgress_; }

    // - preferences
    WebPreferences& preferences() { return preferences_; }

    // - setMediaStyle:
    /// The media type for which the page is styled ("screen", "print", ...); nil for the engine's default.
    void setMediaStyle(const NSString& mediaStyle);

    // What the view is going to be drawn as. When this is said before a page is loaded, the page and its
    // scripts see the view of that drawing, whatever the frame's size: sizes in points.

    void prepareForPDF(NSSize paper);
    void prepareForPrinting(NSSize paper, double margin);

    /// The name and the version of the engine that draws the page; nil for a page that needs none. Runs the
    /// run loop.
    NSString engineVersion() { return page_->engineVersion(); }

    // - setFrame:
    /// Lays the page out anew in the new size.
    void setFrame(NSRect frame) override;

    /// The engine's page, for the other classes of this folder.
    engine::Page& page();

    /// Opens what a process with these rules needs to go on using views.
    static void allowViews(FileRules& rules);

    /// Replaces how pages are made; an empty function restores the real engine.
    static void setPageFactoryForTesting(engine::PageFactory factory);

private:
    friend class WebFrame;

    // PageClient

    void frameAttached(const engine::FrameID& frame, const engine::FrameID& parent) override;
    void frameDetached(const engine::FrameID& frame) override;
    void loadStarted(const engine::FrameID& frame, const NSURL& url) override;
    void loadCommitted(const engine::FrameID& frame, const NSURL& url, const NSString& mimeType) override;
    void titleChanged(const engine::FrameID& frame, const NSString& title) override;
    void loadFinished(const engine::FrameID& frame) override;
    void loadFailed(const engine::FrameID& frame, const NSError& error) override;
    bool shouldNavigate(const engine::FrameID& frame, engine::NavigationType type, const NSURL& url) override;
    void windowRequested(const NSURL& url, const NSString& frameName) override;
    void authenticationRequired(const engine::FrameID& frame, const NSURL& url) override;
    void pageLost(const NSError& error) override;
    void progressChanged(double estimated) override;

    void loadArchiveInFrame(const WebArchive& archive, WebFrame& frame);
    WebFramePtr frameWithID(const engine::FrameID& frame) const;
    void detach(const WebFramePtr& leaving);
    void endLoading(const WebFramePtr& frame);

    WebPreferences preferences_;
    std::map<engine::FrameID, WebFramePtr> frames_;
    WebFramePtr mainFrame_;
    WebFrameLoadDelegate* frameLoadDelegate_ = nullptr;
    WebPolicyDelegate* policyDelegate_ = nullptr;
    WebResourceLoadDelegate* resourceLoadDelegate_ = nullptr;
    double estimatedProgress_ = 0;
    std::unique_ptr<engine::Page> page_; // last: it calls back until it is destroyed
};

} // namespace qrv
