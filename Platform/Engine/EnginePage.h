#pragma once

// A page in the real engine. The engine is started with the page and boots while its owner goes on; it ends
// with it.

#include "Platform/Confinement/FileRules.h"
#include "Platform/Engine/Page.h"

#include <memory>

namespace qrv::engine {

/// A page in an engine of its own, on the run loop of the calling thread. An engine that cannot be had, or
/// that goes away, fails the page's load: NSCocoaErrorDomain 4 when none is installed, NSURLErrorDomain -1005
/// when it dies, -1001 when it does not answer within 30 seconds of its start (WEB2PDF_ENGINE_START_TIMEOUT
/// in the environment, in seconds, changes that).
std::unique_ptr<Page> makeEnginePage(PageClient& client);

/// A page that is loaded to be stored.
class RecordedPage : public Page {
public:
    /// What else there is, by its address: asked for what the archive that is loaded lacks. nil for what is
    /// not to be had.
    using Source = std::function<WebResource(const NSURL& url)>;

    /// To be set before the page is loaded. Addresses of web pages come in their normal form.
    virtual void setSource(Source source) = 0;

    /// Waits until the page that has loaded comes to rest, has it ask for what it shows on screens of several
    /// widths and densities, in the dark and in print, and returns the archive of all that it was given, with
    /// each frame's resources in the archive of that frame. nil when the page is not there any more.
    virtual WebArchive recordedArchive() = 0;
};

/// The same as makeEnginePage.
std::unique_ptr<RecordedPage> makeRecordedPage(PageClient& client);

/// Opens what a process with these rules needs to go on making such pages. Their engines then have no mounts
/// of their own.
void allowEnginePages(FileRules& rules);

} // namespace qrv::engine
