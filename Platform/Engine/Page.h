#pragma once

// A page in an engine, as the web view sees it: what it can be asked to do, and what it tells. Implemented
// over the real engine by EnginePage, and by tests with a script.

#include "Platform/Engine/Loading/PageClient.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSRange.h"
#include "Platform/WebArchive/WebArchive.h"

#include <functional>
#include <memory>

namespace qrv::engine {

class Page {
public:
    virtual ~Page() = default;

    /// Starts loading; what comes of it is told to the client.
    virtual void loadArchive(const WebArchive& archive) = 0;

    /// The view in which the page is laid out, in points (one CSS pixel each).
    virtual void setViewSize(NSSize size) = 0;

    // What is going to be asked for. When this is said before the page is loaded, its scripts see the view of
    // that PDF from the start, whatever setViewSize says.

    virtual void prepareForScreenPDF(NSSize paper) = 0;
    virtual void prepareForPaginatedPDF(NSSize paper, double margin) = 0;

    virtual void setMediaStyle(const NSString& mediaStyle) = 0;
    virtual void setPrintsBackgrounds(bool prints) = 0;

    /// Whether boxes that scroll show all that they hold; true unless set.
    virtual void setUnrollsScrollers(bool unrolls) = 0;

    // The operations below run the loop until the engine has answered.

    /// Waits until the page that is being loaded is there or has failed: loads that nobody waits for, such as
    /// those of "about" addresses, may still be under way when the page is to be drawn.
    virtual void waitForLoad() {}

    /// The name and the version of the engine, such as "HeadlessChrome/140.0.7339.80"; nil for a page that
    /// needs none, and when it does not answer.
    virtual NSString engineVersion() { return {}; }

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
