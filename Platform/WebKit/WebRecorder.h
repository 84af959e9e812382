#pragma once

// Makes a web archive of a page that is not one yet: the page is loaded in an engine without any network, and
// whatever it asks for is asked of the caller. It belongs to the thread whose run loop is current when it is
// made.
//
//     WebRecorder recorder; // the engine boots from here on
//     const WebArchive archive = recorder.archiveOfPage(page, [](const NSURL& url) { ... }, &error);

#include "Platform/Engine/EnginePage.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/WebArchive/WebArchive.h"

#include <memory>

namespace qrv {

class WebRecorder : private engine::PageClient {
public:
    WebRecorder();

    /// Answers with what is to be had at an address, which web addresses have in their normal form; nil for
    /// nothing. A resource with an empty MIME type gets that which the engine takes it for. Called once for
    /// each request, so that an address may come again.
    using Source = engine::RecordedPage::Source;

    /// Loads the archive's page, which has an address, and returns an archive of it and of all that it asked
    /// for, in print and on several screens: from the archive, or else from the source. It runs the run loop.
    /// nil and an error when the page could not be loaded, or the engine ended. To be called once.
    WebArchive archiveOfPage(const WebArchive& archive, Source source, NSError* error);

    /// Opens what a process with these rules needs to go on using recorders.
    static void allowRecorders(FileRules& rules) { engine::allowEnginePages(rules); }

private:
    void frameAttached(const engine::FrameID& /*frame*/, const engine::FrameID& /*parent*/) override {}

    void frameDetached(const engine::FrameID& /*frame*/) override {}

    void loadStarted(const engine::FrameID& /*frame*/, const NSURL& /*url*/) override {}

    void loadCommitted(const engine::FrameID& /*frame*/, const NSURL& /*url*/,
                       const NSString& /*type*/) override {}

    void titleChanged(const engine::FrameID& /*frame*/, const NSString& /*title*/) override {}

    void loadFinished(const engine::FrameID& /*frame*/) override {}

    void loadFailed(const engine::FrameID& frame, const NSError& error) override;
    bool shouldNavigate(const engine::FrameID& frame, engine::NavigationType type, const NSURL& url) override;

    void windowRequested(const NSURL& /*url*/, const NSString& /*frameName*/) override {}

    void authenticationRequired(const engine::FrameID& /*frame*/, const NSURL& /*url*/) override {}

    void pageLost(const NSError& error) override { failure_ = error; }

    void progressChanged(double /*estimated*/) override {}

    NSError failure_;
    std::unique_ptr<engine::RecordedPage> page_; // last: it calls back until it is destroyed
};

} // namespace qrv
