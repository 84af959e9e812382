#pragma once

// The delegates of a web view. Callbacks arrive on the thread of the view's run loop, while that loop runs or
// during the call that starts a load; for each load of a frame, the start comes before the finish or failure.
// All have empty bodies: override what you need. A view does not own its delegates.

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
    /// The load failed before it was committed; the old page stays.
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
    /// The action information contains the type under WebActionNavigationTypeKey. Answer before returning.
    virtual void webView_decidePolicyForNavigationAction_request_frame_decisionListener(
        WebView& /*sender*/, const NSDictionary& /*actionInformation*/, const NSURLRequest& /*request*/,
        const WebFramePtr& /*frame*/, WebPolicyDecisionListener& listener) {
        listener.use();
    }

    // - webView:decidePolicyForNewWindowAction:request:newFrameName:decisionListener:
    /// No window is ever opened, whatever the answer.
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
    /// A challenge is cancelled unless it is answered through its sender.
    virtual void webView_resource_didReceiveAuthenticationChallenge_fromDataSource(
        WebView& /*sender*/, const id& /*identifier*/, const NSURLAuthenticationChallenge& /*challenge*/,
        const std::shared_ptr<WebDataSource>& /*dataSource*/) {}
};

} // namespace qrv
