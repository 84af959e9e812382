#pragma once

// The size of the view in which a page is laid out.

#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Foundation/NSRange.h"

namespace qrv::engine {

class PageWorld;

/// The command that gives a page's view its size.
inline constexpr char setMetricsCommand[] = "Emulation.setDeviceMetricsOverride";

/// Its parameters, for a size in CSS px, and a density in device pixels for each. The scale is that of the
/// picture, which is not looked at; the page cannot see it.
Json viewMetrics(NSSize view, double density, double scale = 1);

/// Gives a page's view its size and runs the loop until it has it.
void setViewMetrics(PageWorld& world, NSSize view, double density, double scale = 1);

} // namespace qrv::engine
