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

/// Opens what a process with these rules needs to go on making such pages. Their engines then have no mounts
/// of their own.
void allowEnginePages(FileRules& rules);

} // namespace qrv::engine
