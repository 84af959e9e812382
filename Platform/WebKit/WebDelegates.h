#pragma once

// What a web view tells its delegates. Every callback arrives on the thread of the view's run loop, while
// that loop runs or inside the call that starts a load. For one load of a frame the start comes before its
// finish or failure. All have empty bodies: implement what is needed. A view does not own its delegates.

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURLAuthenticationChallenge.h"
#include "Platform/Foundation/NSURLRequest.h"
#include "Platform/WebKit/WebNavigation.h"

#include <memory>

namespace qrv {

class WebDataSource;
class WebFrame;
class WebView;

using WebFramePtr = std::shared_ptr<WebFrame>;

class WebFrameLoadDelegate {
public:
    virtual ~WebFrameLoadDelegate() = default;

    // - webView:didStartProvisionalLoadForFrame:
    virtual void webView_didStartProvisionalLoadForFrame(WebView& /*sender*/, const WebFramePtr& /*frame*/) {}

    // - webView:didFinishLoadForFrame:
    virtual void webView_didFinishLoadForFrame(WebView& /*sender*/, const WebFramePtr& /*frame*/) {}

    // - webView:didFailProvisionalLoadWithError:forFrame:
    /// The load failed before its first byte became the frame's page; the old page stays.
    virtual void webView_didFailProvisionalLoadWithError_forFrame(WebView& /*sender*/,
                                                                  const NSError& /*error*/,
                                                                  const WebFramePtr& /*frame*/) {}

    // - webView:didFailLoadWithError:forFrame:
    virtual void webView_didFailLoadWithError_forFrame(WebView& /*sender*/, const NSError& /*error*/,
                                                       const WebFramePtr& /*frame*/) {}

    // - webView:didReceiveTitle:forFrame:
    virtual void webView_didReceiveTitle_forFrame(WebView& /*sender*/, const NSString& /*title*/,
                                                  const WebFramePtr& /*frame*/) {}
};

class WebPolicyDelegate {
public:
    virtual ~WebPolicyDelegate() = default;

    // - webView:decidePolicyForNavigationAction:request:frame:decisionListener:
    /// The action information holds the type under WebActionNavigationTypeKey. Answer before returning.
    virtual void webView_decidePolicyForNavigationAction_request_frame_decisionListener(
        WebView& /*sender*/, const NSDictionary& /*actionInformation*/, const NSURLRequest& /*request*/,
        const WebFramePtr& /*frame*/, WebPolicyDecisionListener& listener) {
        listener.use();
    }

    // - webView:decidePolicyForNewWindowAction:request:newFrameName:decisionListener:
    /// No window is ever opened, whatever the answer: the view has none to offer.
    virtual void webView_decidePolicyForNewWindowAction_request_newFrameName_decisionListener(
        WebView& /*sender*/, const NSDictionary& /*actionInformation*/, const NSURLRequest& /*request*/,
        const NSString& /*frameName*/, WebPolicyDecisionListener& listener) {
        listener.ignore();
    }
};

class WebResourceLoadDelegate {
public:
    virtual ~WebResourceLoadDelegate() = default;

    // - webView:resource:didReceiveAuthenticationChallenge:fromDataSource:
    /// A challenge that is not answered through its sender is cancelled.
    virtual void webView_resource_didReceiveAuthenticationChallenge_fromDataSource(
        WebView& /*sender*/, const id& /*identifier*/, const NSURLAuthenticationChallenge& /*challenge*/,
        const std::shared_ptr<WebDataSource>& /*dataSource*/) {}
};

} // namespace qrv
