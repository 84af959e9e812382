#pragma once

// A page in an engine, as the web view sees it: what it can be asked to do, and what it tells. Implemented
// over the real engine by EnginePage, and by tests with a script.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSRange.h"
#include "Platform/WebArchive/WebArchive.h"
#include "Platform/WebKit/WebNavigation.h"

#include <functional>
#include <memory>
#include <string>

namespace qrv::engine {

/// Names a frame; the main frame is `mainFrame` throughout.
using FrameID = std::string;
inline constexpr char mainFrame[] = "";

/// What a page tells its owner, on the run loop's thread and never inside a call of the owner's, bar the
/// calls of Page that run the loop themselves. For one frame: started, committed, titles, then finished or
/// failed; a load that fails before it is committed is started, failed.
class PageClient {
public:
    virtual ~PageClient() = default;
    virtual void frameAttached(const FrameID& frame, const FrameID& parent) = 0;
    virtual void frameDetached(const FrameID& frame) = 0;
    /// Not called for the first load of an archive, which the owner started itself.
    virtual void loadStarted(const FrameID& frame, const NSURL& url) = 0;
    virtual void loadCommitted(const FrameID& frame, const NSURL& url, const NSString& mimeType) = 0;
    /// nil or empty when the page has no title any more.
    virtual void titleChanged(const FrameID& frame, const NSString& title) = 0;
    virtual void loadFinished(const FrameID& frame) = 0;
    virtual void loadFailed(const FrameID& frame, const NSError& error) = 0;
    /// Asked before a frame navigates; the answer false stops it.
    virtual bool shouldNavigate(const FrameID& frame, WebNavigationType type, const NSURL& url) = 0;
    /// The page wanted a window of its own; it does not get one.
    virtual void windowRequested(const NSURL& url, const NSString& frameName) = 0;
    /// The challenge is cancelled afterwards.
    virtual void authenticationRequired(const FrameID& frame, const NSURL& url) = 0;
    /// From 0 to 1; 1 when everything asked for has arrived.
    virtual void progressChanged(double estimated) = 0;
};

class Page {
public:
    virtual ~Page() = default;

    /// Starts loading; what comes of it is told to the client.
    virtual void loadArchive(const WebArchive& archive) = 0;

    /// The view in which the page is laid out, in points (one CSS pixel each).
    virtual void setViewSize(NSSize size) = 0;
    virtual void setMediaStyle(const NSString& mediaStyle) = 0;
    virtual void setPrintsBackgrounds(bool prints) = 0;

    // The operations below run the loop until the engine has answered.

    /// Waits until the page that is being loaded is there or has failed: loads that nobody waits for, such as
    /// those of "about" addresses, may still be under way when the page is to be drawn.
    virtual void waitForLoad() {}

    /// The node name of the element that holds the frame ("FRAME", "IFRAME", ...); nil when there is none.
    virtual NSString ownerElementName(const FrameID& frame) = 0;
    /// The laid-out document's size in CSS pixels, at least the view's; zero when no document answers.
    virtual NSSize documentSize() = 0;
    /// The whole document on one page, a point for a CSS pixel; nil when the engine does not deliver.
    virtual NSData screenPDF() = 0;
    /// The document on pages of the paper's size (points), scaled down to fit the width between the margins.
    virtual NSData paginatedPDF(NSSize paper, double margin) = 0;
};

/// Makes the page of a view. The client outlives the page.
using PageFactory = std::function<std::unique_ptr<Page>(PageClient&)>;

} // namespace qrv::engine
