#pragma once

// What a page in an engine tells its owner.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURL.h"

#include <string>

namespace qrv::engine {

/// Names a frame; the main frame is `mainFrame` throughout.
using FrameID = std::string;
inline constexpr char mainFrame[] = "";

/// Why a frame is to navigate.
enum class NavigationType { linkClicked, formSubmitted, backForward, reload, formResubmitted, other };

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
    virtual bool shouldNavigate(const FrameID& frame, NavigationType type, const NSURL& url) = 0;
    /// The page wanted a window of its own; it does not get one.
    virtual void windowRequested(const NSURL& url, const NSString& frameName) = 0;
    /// The challenge is cancelled afterwards.
    virtual void authenticationRequired(const FrameID& frame, const NSURL& url) = 0;
    /// The page is gone, at whatever time. The failures of what was loading follow.
    virtual void pageLost(const NSError& error) = 0;
    /// From 0 to 1; 1 when everything asked for has arrived.
    virtual void progressChanged(double estimated) = 0;
};

} // namespace qrv::engine
