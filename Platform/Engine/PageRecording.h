#pragma once

// Has a loaded page ask for all that it may ever show, so that its archive is complete.

#include "Platform/Engine/Archive/PageRecorder.h"
#include "Platform/Engine/DevTools/PageWorld.h"
#include "Platform/Engine/Print/PageReadiness.h"

namespace qrv::engine {

/// Shows the page on screens of several widths and densities, in light and dark colours, and in print, and
/// returns the archive of what the recorder got: the page's and its frames'. Runs the loop. nil when the page
/// does not answer.
WebArchive recordPage(PageWorld& world, PageReadiness& readiness, const PageRecorder& recorder);

} // namespace qrv::engine
