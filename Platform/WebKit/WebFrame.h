#pragma once

// One frame of a page. Frames are compared by identity; a log line shows them by class and address.

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
    /// Made by the view only.
    WebFrame(WebView& view, std::string identifier) : view_(&view), identifier_(std::move(identifier)) {}

    static const ClassInfo classInfo;

    const ClassInfo& objectClass() const override { return classInfo; }

    // - loadArchive:
    /// Asks the policy delegate (type other), tells the frame-load delegate of the start before it returns,
    /// and loads while the run loop runs. Main frame only; nil and frames that have left their view load
    /// nothing.
    void loadArchive(const WebArchive& archive);

    // - dataSource
    /// What is committed; null before the first load.
    const std::shared_ptr<WebDataSource>& dataSource() const { return dataSource_; }

    // - provisionalDataSource
    /// What is asked for and has not begun to arrive; null otherwise.
    const std::shared_ptr<WebDataSource>& provisionalDataSource() const { return provisionalDataSource_; }

    // - childFrames
    /// The direct children, in the order in which they came.
    const std::vector<WebFramePtr>& childFrames() const { return childFrames_; }

    // - frameElement
    /// The element that holds the frame; nil for the main frame and when the engine does not answer. Runs the
    /// run loop.
    DOMElement frameElement() const;

    // - frameView
    /// Null once the frame has left its view.
    WebFrameView* frameView();

private:
    friend class WebView;

    WebView* view_; // null once the frame is detached or the view is gone
    std::string identifier_;
    std::shared_ptr<WebDataSource> dataSource_;
    std::shared_ptr<WebDataSource> provisionalDataSource_;
    std::vector<WebFramePtr> childFrames_;
    std::weak_ptr<WebFrame> parent_;
    std::unique_ptr<WebFrameView> frameView_;
    bool loading_ = false;
};

} // namespace qrv
