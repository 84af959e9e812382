#pragma once

// A frame of a page. Frames are compared by identity; log lines show their class and address.

#include "Platform/WebArchive/WebArchive.h"
#include "Platform/WebKit/DOMElement.h"
#include "Platform/WebKit/WebDataSource.h"
#include "Platform/WebKit/WebDelegates.h"
#include "Platform/WebKit/WebFrameView.h"

#include <memory>
#include <string>
#include <vector>

namespace qrv {

class WebFrame final : public Object, public std::enable_shared_from_this<WebFrame> {
public:
    /// For the view only.
    WebFrame(WebView& view, std::string identifier) : view_(&view), identifier_(std::move(identifier)) {}

    static const ClassInfo classInfo;

    const ClassInfo& objectClass() const override { return classInfo; }

    // - loadArchive:
    /// Asks the policy delegate (type "other"), reports the start to the frame-load delegate before it
    /// returns, and loads while the run loop runs. Main frame only. A nil archive, or a frame that has left
    /// its view, loads nothing.
    void loadArchive(const WebArchive& archive);

    // - dataSource
    /// The committed load; null before the first one.
    const std::shared_ptr<WebDataSource>& dataSource() const { return dataSource_; }

    // - provisionalDataSource
    /// The load that is not yet committed; null if there is none.
    const std::shared_ptr<WebDataSource>& provisionalDataSource() const { return provisionalDataSource_; }

    // - childFrames
    /// The direct children, in the order of their creation. Waits for a page that is still being loaded,
    /// which reports to the delegates meanwhile.
    const std::vector<WebFramePtr>& childFrames() const;

    // - frameElement
    /// Asks the engine for the element that contains the frame; nil for the main frame and if the engine does
    /// not answer. Runs the run loop.
    DOMElement frameElement() const;

    // - frameView
    /// Null after the frame has left its view.
    WebFrameView* frameView();

private:
    friend class WebView;

    WebView* view_; // null after the frame is detached or the view destroyed
    std::string identifier_;
    std::shared_ptr<WebDataSource> dataSource_;
    std::shared_ptr<WebDataSource> provisionalDataSource_;
    std::vector<WebFramePtr> childFrames_;
    std::weak_ptr<WebFrame> parent_;
    std::unique_ptr<WebFrameView> frameView_;
    bool loading_ = false;
};

} // namespace qrv
