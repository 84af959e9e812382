#pragma once

// Drives an off-screen web view until its page has finished loading, and delivers the tool's result to the
// program that started it.
//
// A subclass starts a load in the view's main frame and calls waitUntilDone, which runs the current run loop
// until no frame has been loading for a while, and then reads _error and _view. One thread only.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNotificationCenter.h"
#include "Platform/WebKit/WebView.h"

#include <memory>
#include <vector>

namespace qrv {

class Loader : public WebFrameLoadDelegate, public WebPolicyDelegate, public WebResourceLoadDelegate {
public:
    // - init
    /// Empties and disables the URL cache, then makes the view (612 by 612 points) with the loader as its
    /// delegate.
    Loader();
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;
    // - dealloc
    ~Loader() override;

    // - logArea
    /// The area of the loader's log lines. Subclasses override it: here it raises NSInvalidArgumentException.
    virtual NSString logArea() const;

    // - logFile:line:function:format:
    /// Logs through the shared logger if the loader's area is enabled.
    template <class... Arguments>
    void logFile_line_function_format(const char* file, unsigned long line, const char* function,
                                      FormatFor<Arguments...> format, const Arguments&... arguments) const {
        logExpanded(file, line, function, format, PassedFormatArguments(arguments...));
    }

    // - clearURLCache
    void clearURLCache();

    // - startLoading
    /// Makes the wait last until a frame starts to load: for subclasses whose load starts later.
    void startLoading();

    // - waitUntilDone
    /// Runs the current run loop in slices of 0.2 seconds until no frame has been loading for
    /// webToolExtraLoadingTime, or until _timeoutDate, if it is set. The outcome is in _error and in the
    /// view.
    void waitUntilDone();

    // - extendFinishDate:
    /// Sets the time after which the wait may end, in seconds from now.
    void extendFinishDate(double seconds);

    // - progressFinished:
    void progressFinished(const NSNotification& notification);

    // - postProgress:
    /// Receives the view's progress (0 to 1) before each slice of the wait. Does nothing here.
    virtual void postProgress(double progress);

    // - pageTitle
    /// The title of the main frame's page, or nil.
    NSString pageTitle() const;

    // - hasPageTitle
    bool hasPageTitle() const;

    // The settings, read anew at each call.

    // - webToolTimeout
    /// WebToolTimeout, in seconds; 10 if unset. For subclasses that need a deadline.
    long long webToolTimeout() const;
    // - shouldEnablePlugIns
    /// WebToolEnableWebPlugIns; false if unset.
    bool shouldEnablePlugIns() const;

    // - unrollsScrollers
    /// Web2PDFUnrollScrollers: whether boxes that scroll show all that they hold; true if unset.
    bool unrollsScrollers() const;
    // - maxTriesBeforeTimeout
    /// WebToolMaxTriesBeforeTimeout; 3 if unset. For subclasses that retry.
    unsigned long long maxTriesBeforeTimeout() const;
    // - webToolExtraLoadingTime
    /// WebToolExtraLoadingTime, in seconds; 2 if unset. 0 for a loader that only needs the title.
    long long webToolExtraLoadingTime() const;
    // - margin
    /// Web2PDFPageMargin, in points; 36 if unset.
    double margin() const;

    // - writesXMP
    /// Web2PDFWritesXMP, or WEB2PDF_XMP=1 in the environment: whether the PDF gets XMP metadata; false if
    /// unset.
    bool writesXMP() const;
    // - attachesArchive
    /// Web2PDFAttachesArchive, or WEB2PDF_ATTACH_ARCHIVE=1 in the environment: whether the archive is
    /// attached to the PDF; false if unset.
    bool attachesArchive() const;

    void webView_didStartProvisionalLoadForFrame(WebView& sender, const WebFramePtr& frame) override;
    void webView_didFinishLoadForFrame(WebView& sender, const WebFramePtr& frame) override;
    void webView_didFailProvisionalLoadWithError_forFrame(WebView& sender, const NSError& error,
                                                          const WebFramePtr& frame) override;
    void webView_didFailLoadWithError_forFrame(WebView& sender, const NSError& error,
                                               const WebFramePtr& frame) override;
    void webView_didReceiveTitle_forFrame(WebView& sender, const NSString& title,
                                          const WebFramePtr& frame) override;
    /// Allows navigations that scripts of the page start; refuses links, forms, history and reloads.
    void webView_decidePolicyForNavigationAction_request_frame_decisionListener(
        WebView& sender, const NSDictionary& actionInformation, const NSURLRequest& request,
        const WebFramePtr& frame, WebPolicyDecisionListener& listener) override;
    void webView_decidePolicyForNewWindowAction_request_newFrameName_decisionListener(
        WebView& sender, const NSDictionary& actionInformation, const NSURLRequest& request,
        const NSString& frameName, WebPolicyDecisionListener& listener) override;
    /// Cancels the challenge: no credentials are ever offered, and the load counts as failed.
    void webView_resource_didReceiveAuthenticationChallenge_fromDataSource(
        WebView& sender, const id& identifier, const NSURLAuthenticationChallenge& challenge,
        const std::shared_ptr<WebDataSource>& dataSource) override;

protected:
    /// What is still loading: a WebFrame for each load that has started, or the string "rootPage" until the
    /// first one starts.
    std::vector<id> _objectsLoading;
    /// The latest error of the main frame's load or of an authentication; nil if there was none.
    NSError _error;
    std::unique_ptr<WebView> _view;
    /// When the wait gives up; nil means never.
    NSDate _timeoutDate;
    /// The wait may end as soon as a title is known.
    bool _justTitle = false;
    bool _receivedTitle = false;
    /// When the wait may end if nothing is loading; nil outside a wait and before the list was first empty in
    /// it.
    NSDate _finishDate;

private:
    void logExpanded(const char* file, unsigned long line, const char* function, const AnyFormat& format,
                     FormatArgumentSpan arguments) const;
    void logObjectsLoading() const;
    void logObject(const id& object) const;
    bool extraTimeHasPassed();
    void removeFromLoading(const id& object);
};

/// Delivers the result to the file that the environment variable OutPath names (atomically; a failure is
/// logged), or else to standard output, which is then closed.
void finishWithData(const NSData& data);

} // namespace qrv
