#include "Platform/WebKit/WebRecorder.h"

#include <utility>

namespace qrv {

WebRecorder::WebRecorder() : page_(engine::makeRecordedPage(*this)) {}

WebArchive WebRecorder::archiveOfPage(const WebArchive& archive, Source source, NSError* error) {
    page_->setSource(std::move(source));
    page_->loadArchive(archive);
    page_->waitForLoad();
    WebArchive recorded = failure_ ? WebArchive() : page_->recordedArchive();
    if (recorded && !failure_) return recorded;
    setError(error, failure_
                        ? failure_
                        : NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, NSURLErrorTimedOut, {}));
    return {};
}

/// The page that is there stays when it wants to be left.
void WebRecorder::loadFailed(const engine::FrameID& frame, const NSError& error) {
    if (frame == engine::mainFrame && !failure_) failure_ = error;
}

/// Frames may be filled; the page itself is the one to be recorded.
bool WebRecorder::shouldNavigate(const engine::FrameID& frame, engine::NavigationType type,
                                 const NSURL& /*url*/) {
    return frame != engine::mainFrame && type == engine::NavigationType::other;
}

} // namespace qrv
